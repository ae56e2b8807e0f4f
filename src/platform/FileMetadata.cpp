#include "platform/FileMetadata.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace dorvik::platform {

namespace {

// The names of the entry's extended attributes; none when they cannot be listed.
std::optional<std::vector<std::string>> attributeNames(const std::string& path) {
    for (;;) {
        const ssize_t length = llistxattr(path.c_str(), nullptr, 0);
        if (length < 0) {
            return std::nullopt;
        }
        std::vector<char> buffer(static_cast<size_t>(length));
        const ssize_t listed = llistxattr(path.c_str(), buffer.data(), buffer.size());
        if (listed < 0 && errno == ERANGE) {
            continue; // one was added between the two calls
        }
        if (listed < 0) {
            return std::nullopt;
        }
        std::vector<std::string> names;
        std::string name;
        for (ssize_t index = 0; index < listed; ++index) {
            if (buffer[static_cast<size_t>(index)] == '\0') {
                if (!name.empty()) {
                    names.push_back(name);
                }
                name.clear();
            } else {
                name += buffer[static_cast<size_t>(index)];
            }
        }
        return names;
    }
}

// The value of one attribute; none when it cannot be read.
std::optional<std::vector<char>> attributeValue(const std::string& path, const std::string& name) {
    for (;;) {
        const ssize_t length = lgetxattr(path.c_str(), name.c_str(), nullptr, 0);
        if (length < 0) {
            return std::nullopt;
        }
        std::vector<char> value(static_cast<size_t>(length));
        const ssize_t got = lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
        if (got < 0 && errno == ERANGE) {
            continue;
        }
        if (got < 0) {
            return std::nullopt;
        }
        value.resize(static_cast<size_t>(got));
        return value;
    }
}

} // namespace

void stripExtendedAttributes(const std::string& path) {
    for (const std::string& name : attributeNames(path).value_or(std::vector<std::string>{})) {
        lremovexattr(path.c_str(), name.c_str());
    }
}

int copyMetadata(const std::string& from, const std::string& to) {
    struct stat st {};
    if (lstat(from.c_str(), &st) != 0) {
        return errno;
    }
    auto names = attributeNames(from);
    if (!names) {
        return errno;
    }
    // The access control lists last: they change the mode, and with it who may write the others.
    std::stable_partition(names->begin(), names->end(), [](const std::string& name) {
        return !name.starts_with("system.posix_acl_");
    });
    const int fd = open(to.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0) {
        return errno;
    }
    int error = 0;
    for (const std::string& name : *names) {
        const auto value = attributeValue(from, name);
        if (!value || fsetxattr(fd, name.c_str(), value->data(), value->size(), 0) != 0) {
            error = errno;
            break;
        }
    }
    // The owner before the mode: a change of owner clears the set-user-ID and set-group-ID bits.
    // The times last, since every other change moves them.
    const struct timespec times[2] = {st.st_atim, st.st_mtim};
    if (error == 0 && fchown(fd, st.st_uid, st.st_gid) != 0) {
        error = errno;
    }
    if (error == 0 && fchmod(fd, st.st_mode & 07777) != 0) {
        error = errno;
    }
    if (error == 0 && futimens(fd, times) != 0) {
        error = errno;
    }
    close(fd);
    return error;
}

} // namespace dorvik::platform
