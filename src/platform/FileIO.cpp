#include "platform/FileIO.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik::platform {

namespace {

bool writeAll(int fd, std::span<const uint8_t> bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = write(fd, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        done += static_cast<size_t>(written);
    }
    return true;
}

std::string temporarySibling(const std::string& path) {
    static thread_local std::mt19937_64 random{std::random_device{}()};
    return path + ".tmp-" + std::to_string(getpid()) + "-" + std::to_string(random());
}

} // namespace

bool writeFileAtomically(const std::string& path, std::span<const uint8_t> bytes) {
    std::error_code error;
    const std::filesystem::path parent = std::filesystem::path(path).parent_path();
    if (!parent.empty()) {
        std::filesystem::create_directories(parent, error);
    }
    const std::string temporary = temporarySibling(path);
    const int fd =
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (fd < 0) {
        return false;
    }
    const bool written = writeAll(fd, bytes) && fsync(fd) == 0;
    const bool closed = close(fd) == 0;
    if (!written || !closed || rename(temporary.c_str(), path.c_str()) != 0) {
        unlink(temporary.c_str());
        return false;
    }
    return true;
}

bool writeFileAtomically(const std::string& path, const std::string& text) {
    return writeFileAtomically(
        path, std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

int writeNewFile(const std::string& path, const std::string& text, unsigned mode) {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (fd < 0) {
        return errno;
    }
    int error = 0;
    errno = 0;
    if (!writeAll(fd, std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()))) {
        error = errno != 0 ? errno : EIO;
    }
    close(fd);
    if (error != 0) {
        unlink(path.c_str());
    }
    return error;
}

std::optional<std::vector<uint8_t>> readWholeFile(const std::string& path, size_t maxBytes) {
    // Without O_NONBLOCK, opening a FIFO waits for a writer that may never come. A regular
    // file reads the same either way, and nothing else is read.
    const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        return std::nullopt;
    }
    std::vector<uint8_t> data;
    struct stat st {};
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) ||
        static_cast<uint64_t>(st.st_size) > maxBytes) {
        close(fd);
        return std::nullopt;
    }
    data.reserve(static_cast<size_t>(st.st_size));
    uint8_t buffer[65536];
    while (true) {
        const ssize_t got = read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0 || data.size() + static_cast<size_t>(got) > maxBytes) {
            close(fd);
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        data.insert(data.end(), buffer, buffer + got);
    }
    close(fd);
    return data;
}

} // namespace dorvik::platform
