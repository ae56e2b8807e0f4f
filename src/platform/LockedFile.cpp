#include "platform/LockedFile.h"

#include "base/PathNames.h"
#include "platform/ApplicationSupport.h"
#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/ProcessAlive.h"

#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace dorvik::platform {

namespace {

// A file named without a folder lies in the working folder.
std::string folderOf(const std::string& path) {
    const std::string parent = parentPath(path);
    return parent.empty() ? "." : parent;
}

// The writer's process of "<base>.tmp-<pid>-<number>", and the base; none for any other name.
std::optional<std::pair<std::string, long>> temporaryOf(const std::string& name) {
    constexpr std::string_view marker = ".tmp-";
    const size_t at = name.rfind(marker);
    if (at == std::string::npos || at == 0) {
        return std::nullopt;
    }
    const std::string_view rest = std::string_view(name).substr(at + marker.size());
    const size_t dash = rest.find('-');
    if (dash == std::string_view::npos || dash == 0 || dash + 1 == rest.size()) {
        return std::nullopt;
    }
    long pid = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + dash, pid);
    if (error != std::errc() || end != rest.data() + dash || pid <= 0) {
        return std::nullopt;
    }
    for (const char digit : rest.substr(dash + 1)) {
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
    }
    return std::pair{name.substr(0, at), pid};
}

} // namespace

LockedFile::LockedFile(std::string path) : path_(std::move(path)) {
    const std::string folder = folderOf(path_);
    makePrivateFolder(folder);
    const std::string lockPath = path_ + ".lock";
    const int fd =
        open(lockPath.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, privateFileMode);
    if (fd < 0) {
        return;
    }
    int result = 0;
    do {
        result = flock(fd, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        close(fd);
        return;
    }
    lockDescriptor_ = fd;
    sweepStaleTemporaries(folder, pathName(path_));
}

LockedFile::~LockedFile() {
    if (lockDescriptor_ >= 0) {
        close(lockDescriptor_); // releases the lock
    }
}

std::optional<std::string> LockedFile::read(size_t maxBytes) const {
    const auto bytes = readWholeFile(path_, maxBytes);
    if (!bytes) {
        return std::nullopt;
    }
    return std::string(bytes->begin(), bytes->end());
}

bool LockedFile::write(const std::string& text) const {
    return writeFileAtomically(path_, text, privateFileMode);
}

void sweepStaleTemporaries(const std::string& folder, const std::string& lockedName) {
    const auto names = directoryEntries(folder);
    if (!names) {
        return;
    }
    for (const std::string& name : *names) {
        const auto temporary = temporaryOf(name);
        if (!temporary) {
            continue;
        }
        const auto& [base, pid] = *temporary;
        if (base == lockedName || !processIsAlive(pid)) {
            unlink((folder + "/" + name).c_str());
        }
    }
}

} // namespace dorvik::platform
