#include "platform/TrashRestore.h"

#include "base/PathNames.h"
#include "platform/ApplicationSupport.h"
#include "platform/FileSystem.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dorvik::platform {

namespace {

constexpr std::string_view infoSuffix = ".trashinfo";
// A ".trashinfo" holds a path and a date: anything larger was not written by a trash.
constexpr size_t largestTrashInfo = 64 * 1024;

FileError refusal(std::string why) {
    return FileError{FileErrorKind::other, std::move(why)};
}

class Descriptor {
public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) {
            close(fd_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }

private:
    int fd_;
};

std::optional<std::string> realPathOf(const std::string& path) {
    char* resolved = realpath(path.c_str(), nullptr);
    if (resolved == nullptr) {
        return std::nullopt;
    }
    std::string result = resolved;
    std::free(resolved);
    return result;
}

// Whether another mount begins at `folder`: its mount id (or, on an older kernel, its device)
// differs from its parent's.
bool isMountPoint(const std::string& folder) {
    if (folder == "/") {
        return true;
    }
    struct statx inside {};
    struct statx above {};
    if (statx(AT_FDCWD, folder.c_str(), AT_SYMLINK_NOFOLLOW, STATX_MNT_ID, &inside) != 0 ||
        statx(AT_FDCWD, parentPath(folder).c_str(), AT_SYMLINK_NOFOLLOW, STATX_MNT_ID, &above) !=
            0) {
        return false;
    }
    if ((inside.stx_mask & above.stx_mask & STATX_MNT_ID) != 0) {
        return inside.stx_mnt_id != above.stx_mnt_id;
    }
    return inside.stx_dev_major != above.stx_dev_major ||
           inside.stx_dev_minor != above.stx_dev_minor;
}

// A trash Dorvik puts items in, by its real path, and the folder its ".trashinfo" paths are
// relative to (empty for the home trash, whose paths are absolute).
struct KnownTrash {
    std::string folder;
    std::string top;
};

std::optional<KnownTrash> knownTrash(const std::string& filesFolder) {
    const auto files = realPathOf(filesFolder);
    if (!files || pathName(*files) != "files") {
        return std::nullopt;
    }
    const std::string trash = parentPath(*files);
    if (const auto home = realPathOf(dataHomeDirectory() + "/Trash"); home && *home == trash) {
        return KnownTrash{trash, ""};
    }
    const std::string uid = std::to_string(geteuid());
    const std::string above = parentPath(trash);
    if (pathName(trash) == ".Trash-" + uid && isMountPoint(above)) {
        return KnownTrash{trash, above};
    }
    if (pathName(trash) == uid && pathName(above) == ".Trash" && isMountPoint(parentPath(above))) {
        return KnownTrash{trash, parentPath(above)};
    }
    return std::nullopt;
}

std::optional<std::string> readSmallFile(int folder, const std::string& name) {
    const Descriptor fd(
        openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat st {};
    if (!fd.valid() || fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode) ||
        static_cast<size_t>(st.st_size) > largestTrashInfo) {
        return std::nullopt;
    }
    std::string text(static_cast<size_t>(st.st_size), '\0');
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t got = read(fd.get(), text.data() + done, text.size() - done);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return std::nullopt;
        }
        done += static_cast<size_t>(got);
    }
    return text;
}

// The absolute path the ".trashinfo" text names; none when it is no trash info.
std::optional<std::string> infoPathValue(const std::string& text, const KnownTrash& trash) {
    constexpr std::string_view header = "[Trash Info]\n";
    constexpr std::string_view key = "\nPath=";
    if (!text.starts_with(header)) {
        return std::nullopt;
    }
    const size_t at = text.find(key, header.size() - 1);
    if (at == std::string::npos) {
        return std::nullopt;
    }
    const size_t start = at + key.size();
    const size_t end = text.find('\n', start);
    const std::string value =
        trashInfoUnescaped(text.substr(start, end == std::string::npos ? end : end - start));
    if (value.starts_with('/')) {
        return value;
    }
    if (trash.top.empty() || value.empty()) {
        return std::nullopt;
    }
    return childPath(trash.top, value);
}

// Where the system would put `originalPath` now: the folders above it resolved as far as they
// exist, the missing ones appended as named. None for a path with "." or ".." among the missing.
std::optional<std::string> placeNow(const std::string& originalPath) {
    std::string folder = parentPath(originalPath);
    std::vector<std::string> missing;
    std::optional<std::string> resolved;
    while (!(resolved = realPathOf(folder))) {
        const std::string name = pathName(folder);
        if (errno != ENOENT || folder == "/" || name.empty() || name == "." || name == "..") {
            return std::nullopt;
        }
        missing.push_back(name);
        folder = parentPath(folder);
    }
    std::string place = *resolved;
    for (auto name = missing.rbegin(); name != missing.rend(); ++name) {
        place = childPath(place, *name);
    }
    return childPath(place, pathName(originalPath));
}

// Opens `folder` from "/" one component at a time, never following a link, making what is
// missing. Bounded descriptors: one open at a time besides the result.
std::optional<FileError> openFolderCreating(const std::string& folder, Descriptor& result) {
    constexpr int flags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    Descriptor current(open("/", flags));
    if (!current.valid()) {
        return fileErrorFromNumber(errno);
    }
    size_t start = 1;
    while (start < folder.size()) {
        size_t end = folder.find('/', start);
        if (end == std::string::npos) {
            end = folder.size();
        }
        const std::string name = folder.substr(start, end - start);
        start = end + 1;
        if (name.empty()) {
            continue;
        }
        Descriptor next(openat(current.get(), name.c_str(), flags));
        if (!next.valid() && errno == ENOENT) {
            if (mkdirat(current.get(), name.c_str(), 0777) != 0 && errno != EEXIST) {
                return fileErrorFromNumber(errno);
            }
            next = Descriptor(openat(current.get(), name.c_str(), flags));
        }
        if (!next.valid()) {
            const int error = errno;
            struct stat st {};
            if (fstatat(current.get(), name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 &&
                S_ISLNK(st.st_mode)) {
                return refusal("A folder above its original place is a link now.");
            }
            return fileErrorFromNumber(error);
        }
        current = std::move(next);
    }
    result = std::move(current);
    return std::nullopt;
}

} // namespace

std::string trashInfoUnescaped(const std::string& value) {
    const auto digit = [](char ch) {
        if (ch >= '0' && ch <= '9') {
            return ch - '0';
        }
        if (ch >= 'A' && ch <= 'F') {
            return ch - 'A' + 10;
        }
        if (ch >= 'a' && ch <= 'f') {
            return ch - 'a' + 10;
        }
        return -1;
    };
    std::string path;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '%' && i + 2 < value.size() && digit(value[i + 1]) >= 0 &&
            digit(value[i + 2]) >= 0) {
            path += static_cast<char>(digit(value[i + 1]) * 16 + digit(value[i + 2]));
            i += 2;
        } else {
            path += value[i];
        }
    }
    return path;
}

std::optional<FileError> restoreFromTrash(const std::string& trashedPath,
                                          const std::string& originalPath,
                                          const std::optional<ItemIdentity>& expected) {
    const std::string name = pathName(trashedPath);
    const std::string leaf = pathName(originalPath);
    if (!originalPath.starts_with('/') || leaf.empty() || leaf == "." || leaf == ".." ||
        name.empty()) {
        return fileErrorFromNumber(EINVAL);
    }
    const auto trash = knownTrash(parentPath(trashedPath));
    if (!trash) {
        return refusal("It does not lie in a Trash that Dorvik uses.");
    }
    constexpr int folderFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const Descriptor trashFolder(open(trash->folder.c_str(), folderFlags));
    const Descriptor files(openat(trashFolder.get(), "files", folderFlags));
    const Descriptor info(openat(trashFolder.get(), "info", folderFlags));
    if (!files.valid() || !info.valid()) {
        return refusal("It does not lie in a Trash that Dorvik uses.");
    }
    struct stat item {};
    if (fstatat(files.get(), name.c_str(), &item, AT_SYMLINK_NOFOLLOW) != 0) {
        return fileErrorFromNumber(errno);
    }
    if (expected && ItemIdentity{item.st_dev, item.st_ino, item.st_size} != *expected) {
        return refusal("The item in the Trash is not the one that was removed.");
    }
    const std::string infoName = name + std::string(infoSuffix);
    const auto infoText = readSmallFile(info.get(), infoName);
    const auto infoPath = infoText ? infoPathValue(*infoText, *trash) : std::nullopt;
    if (!infoPath) {
        return refusal("Its Trash information is missing or unreadable.");
    }
    const auto place = placeNow(originalPath);
    if (!place || *place != *infoPath) {
        if (*infoPath == originalPath) {
            return refusal("A folder above its original place is a link now.");
        }
        return refusal("Its Trash information names another place.");
    }
    Descriptor parent;
    if (auto error = openFolderCreating(parentPath(*infoPath), parent)) {
        return error;
    }
    if (const int error = renameNoReplaceAt(files.get(), name, parent.get(), leaf); error != 0) {
        return fileErrorFromNumber(error);
    }
    unlinkat(info.get(), infoName.c_str(), 0);
    return std::nullopt;
}

void forgetTrashInfo(const PinnedFolder& folder, const std::string& folderPath,
                     const std::string& name) {
    if (pathName(folderPath) != "files" || !folder.isOpen()) {
        return;
    }
    const auto trash = knownTrash(folderPath);
    if (!trash) {
        return;
    }
    // The trash's own "files" must be the very folder the item left.
    constexpr int folderFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const Descriptor trashFolder(open(trash->folder.c_str(), folderFlags));
    const auto files = trashFolder.valid() ? identityAt(trashFolder.get(), "files") : std::nullopt;
    if (!files || !files->sameEntry(folder.identity())) {
        return;
    }
    const Descriptor info(openat(trashFolder.get(), "info", folderFlags));
    if (info.valid()) {
        unlinkat(info.get(), (name + std::string(infoSuffix)).c_str(), 0);
    }
}

std::optional<ItemIdentity> settleTrashClaim(const TrashClaim& claim) {
    struct stat st {};
    const bool occupied = lstat(claim.trashedPath.c_str(), &st) == 0;
    if (occupied && st.st_dev == claim.item.device && st.st_ino == claim.item.inode) {
        return claim.item;
    }
    const std::string folder = parentPath(claim.infoPath);
    const Descriptor info(open(folder.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const std::string infoName = pathName(claim.infoPath);
    const auto text = info.valid() ? readSmallFile(info.get(), infoName) : std::nullopt;
    if (!text) {
        return std::nullopt;
    }
    // Killed while writing it, the file holds the start of what was meant.
    const bool cutShort = !occupied && claim.infoText.starts_with(*text);
    if (*text == claim.infoText || cutShort) {
        unlinkat(info.get(), infoName.c_str(), 0);
    }
    return std::nullopt;
}

} // namespace dorvik::platform
