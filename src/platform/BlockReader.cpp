#include "platform/BlockReader.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace dorvik::platform {

namespace {

// Fills `block` as far as the file allows: a read may return less than asked without being at
// the end. The count read, or -1 when a read failed before anything was read.
ssize_t readFully(int fd, std::span<uint8_t> block) {
    size_t filled = 0;
    while (filled < block.size()) {
        const ssize_t got = read(fd, block.data() + filled, block.size() - filled);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return filled > 0 ? static_cast<ssize_t>(filled) : -1;
        }
        if (got == 0) {
            break;
        }
        filled += static_cast<size_t>(got);
    }
    return static_cast<ssize_t>(filled);
}

} // namespace

bool readInBlocks(const std::string& path, int64_t budget, std::span<uint8_t> buffer,
                  const std::function<void(std::span<const uint8_t>)>& consume, int64_t offset) {
    int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOATIME);
    // EPERM: O_NOATIME is for the file's owner only; then the kernel's access time stands.
    if (fd < 0 && errno == EPERM) {
        fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    }
    if (fd < 0) {
        return false;
    }
    posix_fadvise(fd, offset, 0, POSIX_FADV_SEQUENTIAL);
    if (offset > 0 && lseek(fd, offset, SEEK_SET) != offset) {
        budget = 0; // as if the file ended there
    }
    while (budget > 0) {
        const auto want =
            static_cast<size_t>(std::min<int64_t>(budget, static_cast<int64_t>(buffer.size())));
        const ssize_t got = readFully(fd, buffer.first(want));
        if (got <= 0) {
            break;
        }
        consume(buffer.first(static_cast<size_t>(got)));
        budget -= got;
        if (static_cast<size_t>(got) < want) {
            break;
        }
    }
    close(fd);
    return true;
}

bool contentsEqual(const std::string& first, const std::string& second) {
    const int one = open(first.c_str(), O_RDONLY | O_CLOEXEC);
    if (one < 0) {
        return false;
    }
    const int two = open(second.c_str(), O_RDONLY | O_CLOEXEC);
    if (two < 0) {
        close(one);
        return false;
    }
    constexpr size_t blockBytes = 1 << 20;
    std::vector<uint8_t> left(blockBytes);
    std::vector<uint8_t> right(blockBytes);
    bool equal = true;
    while (equal) {
        const ssize_t gotLeft = readFully(one, left);
        const ssize_t gotRight = readFully(two, right);
        equal = gotLeft >= 0 && gotLeft == gotRight &&
                std::equal(left.begin(), left.begin() + gotLeft, right.begin());
        if (gotLeft <= 0) {
            break;
        }
    }
    close(one);
    close(two);
    return equal;
}

} // namespace dorvik::platform
