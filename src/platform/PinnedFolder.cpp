#include "platform/PinnedFolder.h"

#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace dorvik::platform {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Opens `path` one name at a time from the root, never following a link: for kernels without
// openat2. ".." is allowed, as openat2 allows it.
int openNameByName(const std::string& path) {
    int folder = open("/", folderFlags);
    size_t start = 0;
    while (folder >= 0 && start < path.size()) {
        const size_t slash = path.find('/', start);
        const size_t end = slash == std::string::npos ? path.size() : slash;
        const std::string name = path.substr(start, end - start);
        start = end + 1;
        if (name.empty() || name == ".") {
            continue;
        }
        const int inner = openat(folder, name.c_str(), folderFlags | O_NOFOLLOW);
        const int error = errno;
        close(folder);
        folder = inner;
        errno = error;
    }
    return folder;
}

// The folder at `path`, reached without following any link (ELOOP if one is met).
int openWithoutLinks(const std::string& path) {
    open_how how{};
    how.flags = folderFlags;
    how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
    const long fd = syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how);
    if (fd < 0 && errno == ENOSYS) {
        return openNameByName(path);
    }
    return static_cast<int>(fd);
}

} // namespace

std::optional<FileIdentity> identityAt(int folder, const std::string& name) {
    struct statx st {};
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (name.empty() ? AT_EMPTY_PATH : 0);
    if (statx(folder, name.c_str(), flags, STATX_TYPE | STATX_INO | STATX_MNT_ID, &st) != 0) {
        return std::nullopt;
    }
    const uint64_t device = makedev(st.stx_dev_major, st.stx_dev_minor);
    // Kernels before 5.8 give no mount id: the device is the best there is.
    const uint64_t mount = (st.stx_mask & STATX_MNT_ID) != 0 ? st.stx_mnt_id : device;
    return FileIdentity{device, st.stx_ino, mount, S_ISDIR(st.stx_mode)};
}

std::optional<ItemPath> splitItemPath(const std::string& path) {
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == '/') {
        trimmed.pop_back();
    }
    const size_t slash = trimmed.rfind('/');
    if (trimmed.empty() || trimmed[0] != '/' || slash == std::string::npos) {
        return std::nullopt;
    }
    ItemPath split{slash == 0 ? "/" : trimmed.substr(0, slash), trimmed.substr(slash + 1)};
    if (split.name.empty() || split.name == "." || split.name == "..") {
        return std::nullopt;
    }
    return split;
}

PinnedFolder::PinnedFolder(const std::string& path) : descriptor_(openWithoutLinks(path)) {
    if (descriptor_ < 0) {
        errorNumber_ = errno;
        return;
    }
    if (const auto identity = identityAt(descriptor_, "")) {
        identity_ = *identity;
    } else {
        errorNumber_ = errno;
        close(descriptor_);
        descriptor_ = -1;
    }
}

PinnedFolder::~PinnedFolder() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

PinnedFolder::PinnedFolder(PinnedFolder&& other) noexcept
    : descriptor_(other.descriptor_), errorNumber_(other.errorNumber_), identity_(other.identity_) {
    other.descriptor_ = -1;
}

std::optional<FileError> PinnedFolder::error() const {
    if (isOpen()) {
        return std::nullopt;
    }
    return fileErrorFromNumber(errorNumber_);
}

bool PinnedFolder::stillAt(const std::string& path) const {
    const PinnedFolder again(path);
    return isOpen() && again.isOpen() && again.identity_.sameEntry(identity_) &&
           again.identity_.mount == identity_.mount;
}

std::optional<std::string> PinnedFolder::currentPath() const {
    if (!isOpen()) {
        return std::nullopt;
    }
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor_);
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlink(link.c_str(), target.data(), target.size());
    if (length <= 0 || static_cast<size_t>(length) >= target.size() || target[0] != '/') {
        return std::nullopt;
    }
    return std::string(target.data(), static_cast<size_t>(length));
}

} // namespace dorvik::platform
