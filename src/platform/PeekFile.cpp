#include "platform/PeekFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik::platform {

namespace {

// Reads up to `maxBytes` from the start of `fd`.
std::optional<std::vector<uint8_t>> readStart(int fd, size_t maxBytes) {
    std::vector<uint8_t> bytes;
    constexpr size_t chunk = 64 * 1024;
    while (bytes.size() < maxBytes) {
        const size_t want = std::min(chunk, maxBytes - bytes.size());
        const size_t had = bytes.size();
        bytes.resize(had + want);
        const ssize_t got = read(fd, bytes.data() + had, want);
        if (got < 0 && errno == EINTR) {
            bytes.resize(had);
            continue;
        }
        if (got < 0) {
            return std::nullopt;
        }
        bytes.resize(had + static_cast<size_t>(got));
        if (got == 0) {
            break;
        }
    }
    return bytes;
}

} // namespace

std::optional<std::vector<uint8_t>> peekFile(const std::string& path, size_t maxBytes) {
    int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOATIME);
    const bool accessTimeKept = fd >= 0;
    // EPERM: O_NOATIME is for the file's owner only; read as anyone may and put the time back.
    if (fd < 0 && errno == EPERM) {
        fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    }
    if (fd < 0) {
        return std::nullopt;
    }
    struct stat before {};
    const bool known = accessTimeKept || fstat(fd, &before) == 0;
    auto bytes = readStart(fd, maxBytes);
    if (!accessTimeKept && known) {
        const struct timespec times[2] = {before.st_atim, {0, UTIME_OMIT}};
        futimens(fd, times); // refused unless we may set times; then the kernel's time stands
    }
    close(fd);
    return bytes;
}

} // namespace dorvik::platform
