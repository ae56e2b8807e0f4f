#include "platform/Trash.h"

#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dorvik::platform {

namespace {

constexpr std::string_view infoSuffix = ".trashinfo";
constexpr int maximumNameAttempts = 10000;

// A trash folder and how its ".trashinfo" files name the original place.
struct TrashFolder {
    std::string path;
    std::string pathPrefix; // taken off the item's path for "Path"; empty in the home trash
};

std::string parentOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder == "/" ? "/" + name : folder + "/" + name;
}

// Makes the folder with mode 0700 unless it is there. Zero when a real folder owned by this user
// stands there afterwards; ELOOP when a link stands there instead, EACCES for anything else.
int ensurePrivateFolder(const std::string& path) {
    if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        return errno;
    }
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) {
        return errno;
    }
    if (S_ISLNK(st.st_mode)) {
        return ELOOP;
    }
    return S_ISDIR(st.st_mode) && st.st_uid == geteuid() ? 0 : EACCES;
}

int ensureTrashFolder(const std::string& path) {
    for (const std::string& folder : {path, path + "/files", path + "/info"}) {
        if (const int error = ensurePrivateFolder(folder); error != 0) {
            return error;
        }
    }
    return 0;
}

// The identity of the folder at `path`, following links (the user's data folder may be reached
// through one), or none.
std::optional<FileIdentity> folderIdentity(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return std::nullopt;
    }
    const auto identity = identityAt(fd, "");
    close(fd);
    return identity;
}

// Both on one mount and one filesystem, so that a rename between them can work.
bool sameMount(const FileIdentity& a, const FileIdentity& b) {
    return a.mount == b.mount && a.device == b.device;
}

// The home trash when the item's folder lies on its mount; none for an item elsewhere. A home
// trash that cannot be used (a link, another owner) is an error: it is not bypassed.
std::optional<TrashFolder> homeTrash(const FileIdentity& itemFolder, int& error) {
    error = 0;
    const std::string data = dataHomeDirectory();
    // The data folder itself may be missing in a fresh home.
    for (size_t slash = data.find('/', 1); slash != std::string::npos;
         slash = data.find('/', slash + 1)) {
        mkdir(data.substr(0, slash).c_str(), 0700);
    }
    mkdir(data.c_str(), 0700);
    const auto dataFolder = folderIdentity(data);
    if (!dataFolder || !sameMount(*dataFolder, itemFolder)) {
        return std::nullopt;
    }
    const std::string trash = data + "/Trash";
    error = ensureTrashFolder(trash);
    if (error != 0) {
        return std::nullopt;
    }
    return TrashFolder{trash, ""};
}

// The mount point of the item's own mount: the highest folder above `realFolder` (a path without
// links) on that mount. A bind mount's top is where it is mounted, not its filesystem's top.
std::string topFolder(const std::string& realFolder, const FileIdentity& mount) {
    std::string top = realFolder;
    while (top != "/") {
        const std::string up = parentOf(top);
        const auto identity = folderIdentity(up);
        if (!identity || !sameMount(*identity, mount)) {
            break;
        }
        top = up;
    }
    return top;
}

// $topdir/.Trash/$uid when the administrator prepared a shared .Trash (a real folder with the
// sticky bit), else $topdir/.Trash-$uid, made on first need.
std::optional<TrashFolder> topTrash(const std::string& top) {
    const std::string uid = std::to_string(geteuid());
    const std::string shared = joined(top, ".Trash");
    struct stat st {};
    if (lstat(shared.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && (st.st_mode & S_ISVTX) != 0) {
        const std::string mine = shared + "/" + uid;
        if (ensureTrashFolder(mine) == 0) {
            return TrashFolder{mine, top};
        }
    }
    const std::string own = joined(top, ".Trash-" + uid);
    if (ensureTrashFolder(own) == 0) {
        return TrashFolder{own, top};
    }
    return std::nullopt;
}

std::string deletionDate() {
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    std::array<char, 32> text{};
    strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return text.data();
}

// The name with ".N" before its extension; cut short, at a character boundary, so that its
// ".trashinfo" still fits in a file name.
std::string candidateName(const std::string& name, int attempt) {
    const std::string counter = attempt == 1 ? "" : "." + std::to_string(attempt);
    const size_t room = NAME_MAX - infoSuffix.size();
    // An "extension" that would leave the stem no room is part of the name: cutting the stem to
    // nothing would leave a hidden name.
    const size_t dot = name.rfind('.');
    const bool hasExtension =
        dot != std::string::npos && dot > 0 && name.size() - dot + counter.size() < room / 2;
    std::string stem = hasExtension ? name.substr(0, dot) : name;
    const std::string extension = hasExtension ? name.substr(dot) : "";
    while (stem.size() + counter.size() + extension.size() > room && !stem.empty()) {
        stem.pop_back();
        while (!stem.empty() && (static_cast<unsigned char>(stem.back()) & 0xC0) == 0x80) {
            stem.pop_back();
        }
        if (!stem.empty() && (static_cast<unsigned char>(stem.back()) & 0x80) != 0) {
            stem.pop_back(); // the lead byte of the character just cut
        }
    }
    std::string candidate = stem + counter + extension;
    return candidate.size() > room ? candidate.substr(0, room) : candidate;
}

// Claims a free name with its ".trashinfo" (made exclusively, so two removals never share one),
// then moves the item in. The info file goes again if the move fails. Zero or the error number.
int moveInto(const TrashFolder& trash, int folder, const std::string& name,
             const std::string& realPath, const ItemIdentity& item,
             const std::function<void(const TrashClaim&)>& claimed, std::string& trashedPath) {
    std::string recorded = realPath;
    if (!trash.pathPrefix.empty()) {
        recorded = realPath.substr(trash.pathPrefix == "/" ? 1 : trash.pathPrefix.size() + 1);
    }
    const std::string info = "[Trash Info]\nPath=" + trashInfoEscaped(recorded) +
                             "\nDeletionDate=" + deletionDate() + "\n";
    for (int attempt = 1; attempt <= maximumNameAttempts; ++attempt) {
        const std::string candidate = candidateName(name, attempt);
        const std::string infoPath = trash.path + "/info/" + candidate + std::string(infoSuffix);
        const std::string target = trash.path + "/files/" + candidate;
        if (claimed) {
            claimed(TrashClaim{target, infoPath, info, item});
        }
        if (const int error = writeNewFile(infoPath, info, 0600); error != 0) {
            if (error == EEXIST) {
                continue;
            }
            return error;
        }
        const int error = renameNoReplaceAt(folder, name, AT_FDCWD, target);
        if (error == EEXIST) {
            unlink(infoPath.c_str()); // a stray item without its info holds the name
            continue;
        }
        if (error != 0) {
            unlink(infoPath.c_str());
            return error;
        }
        trashedPath = target;
        return 0;
    }
    return EEXIST;
}

} // namespace

std::string trashInfoEscaped(const std::string& path) {
    constexpr std::string_view hex = "0123456789ABCDEF";
    std::string escaped;
    for (const char ch : path) {
        const auto byte = static_cast<unsigned char>(ch);
        const bool plain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' ||
                           byte == '_' || byte == '~' || byte == '/';
        if (plain) {
            escaped += ch;
        } else {
            escaped += '%';
            escaped += hex[byte >> 4];
            escaped += hex[byte & 0x0F];
        }
    }
    return escaped;
}

TrashOutcome moveToTrashAt(const PinnedFolder& folder, const std::string& name,
                           const std::function<void(const TrashClaim&)>& claimed) {
    if (!folder.isOpen()) {
        return {std::nullopt, folder.error()};
    }
    const auto item = identityAt(folder.descriptor(), name);
    struct stat itemStat {};
    if (!item || fstatat(folder.descriptor(), name.c_str(), &itemStat, AT_SYMLINK_NOFOLLOW) != 0) {
        return {std::nullopt, fileErrorFromNumber(errno)};
    }
    if (item->mount != folder.identity().mount) {
        return {std::nullopt, mountPointError()};
    }
    const auto realFolder = folder.currentPath();
    if (!realFolder) {
        return {std::nullopt, fileErrorFromNumber(ENOENT)};
    }
    int homeError = 0;
    std::optional<TrashFolder> trash = homeTrash(folder.identity(), homeError);
    if (homeError == ELOOP) {
        return {std::nullopt, FileError{FileErrorKind::other,
                                        "The Trash folder is a link, and Dorvik won't follow it."}};
    }
    if (homeError != 0) {
        return {std::nullopt, fileErrorFromNumber(homeError)};
    }
    if (!trash) {
        trash = topTrash(topFolder(*realFolder, folder.identity()));
    }
    if (!trash) {
        return {std::nullopt, fileErrorFromNumber(EACCES)};
    }
    const ItemIdentity identity{itemStat.st_dev, itemStat.st_ino, itemStat.st_size};
    std::string trashedPath;
    const int error = moveInto(*trash, folder.descriptor(), name, joined(*realFolder, name),
                               identity, claimed, trashedPath);
    if (error != 0) {
        return {std::nullopt, fileErrorFromNumber(error)};
    }
    return {trashedPath, std::nullopt, identity};
}

TrashOutcome moveToTrash(const std::string& path,
                         const std::function<void(const TrashClaim&)>& claimed) {
    const auto split = splitItemPath(path);
    if (!split) {
        return {std::nullopt, fileErrorFromNumber(EINVAL)};
    }
    return moveToTrashAt(PinnedFolder(split->folder), split->name, claimed);
}

} // namespace dorvik::platform
