#include "platform/Trash.h"

#include "platform/FileIO.h"
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

struct Split {
    std::string parent;
    std::string name;
};

std::optional<Split> splitPath(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return std::nullopt;
    }
    Split split{slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
    if (split.name.empty() || split.name == "." || split.name == "..") {
        return std::nullopt;
    }
    return split;
}

std::string parentOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder == "/" ? "/" + name : folder + "/" + name;
}

std::string dataHome() {
    if (const char* value = std::getenv("XDG_DATA_HOME"); value != nullptr && value[0] == '/') {
        return value;
    }
    return homeDirectory() + "/.local/share";
}

// Makes the folder with mode 0700 unless it is there; true if a real folder (no link) stands
// there afterwards, owned by this user.
bool ensurePrivateFolder(const std::string& path) {
    if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        return false;
    }
    struct stat st {};
    return lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == geteuid();
}

bool ensureTrashFolder(const std::string& path) {
    return ensurePrivateFolder(path) && ensurePrivateFolder(path + "/files") &&
           ensurePrivateFolder(path + "/info");
}

std::optional<TrashFolder> homeTrash(dev_t device) {
    const std::string data = dataHome();
    // The data folder itself may be missing in a fresh home.
    for (size_t slash = data.find('/', 1); slash != std::string::npos;
         slash = data.find('/', slash + 1)) {
        mkdir(data.substr(0, slash).c_str(), 0700);
    }
    mkdir(data.c_str(), 0700);
    const std::string trash = data + "/Trash";
    struct stat st {};
    if (!ensureTrashFolder(trash) || stat(trash.c_str(), &st) != 0 || st.st_dev != device) {
        return std::nullopt;
    }
    return TrashFolder{trash, ""};
}

// The highest folder above `realFolder` (a path without links) on the same filesystem.
std::string topFolder(const std::string& realFolder, dev_t device) {
    std::string top = realFolder;
    while (top != "/") {
        const std::string up = parentOf(top);
        struct stat st {};
        if (stat(up.c_str(), &st) != 0 || st.st_dev != device) {
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
        if (ensureTrashFolder(mine)) {
            return TrashFolder{mine, top};
        }
    }
    const std::string own = joined(top, ".Trash-" + uid);
    if (ensureTrashFolder(own)) {
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
    const size_t dot = name.rfind('.');
    const bool hasExtension = dot != std::string::npos && dot > 0;
    std::string stem = hasExtension ? name.substr(0, dot) : name;
    const std::string extension = hasExtension ? name.substr(dot) : "";
    const std::string counter = attempt == 1 ? "" : "." + std::to_string(attempt);
    const size_t room = NAME_MAX - infoSuffix.size();
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

// Renames without replacing anything. Zero or the error number.
int renameNoReplace(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL) {
        return errno;
    }
    // A filesystem without the flag: check, then rename.
    struct stat st {};
    if (lstat(to.c_str(), &st) == 0) {
        return EEXIST;
    }
    return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

// Claims a free name with its ".trashinfo" (made exclusively, so two removals never share one),
// then moves the item in. The info file goes again if the move fails. Zero or the error number.
int moveInto(const TrashFolder& trash, const std::string& path, const std::string& realPath,
             const std::string& name, const ItemIdentity& item,
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
        const int error = renameNoReplace(path, target);
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

TrashOutcome moveToTrash(const std::string& path,
                         const std::function<void(const TrashClaim&)>& claimed) {
    const auto split = splitPath(path);
    if (!split) {
        return {std::nullopt, fileErrorFromNumber(EINVAL)};
    }
    struct stat item {};
    if (lstat(path.c_str(), &item) != 0) {
        return {std::nullopt, fileErrorFromNumber(errno)};
    }
    // The item lives on its folder's filesystem (the item itself may be a mount point).
    char* resolved = realpath(split->parent.c_str(), nullptr);
    if (resolved == nullptr) {
        return {std::nullopt, fileErrorFromNumber(errno)};
    }
    const std::string realParent = resolved;
    std::free(resolved);
    struct stat parent {};
    if (stat(realParent.c_str(), &parent) != 0) {
        return {std::nullopt, fileErrorFromNumber(errno)};
    }
    const std::string realPath = joined(realParent, split->name);
    const ItemIdentity identity{item.st_dev, item.st_ino, item.st_size};

    std::string trashedPath;
    if (const auto home = homeTrash(parent.st_dev)) {
        const int error =
            moveInto(*home, path, realPath, split->name, identity, claimed, trashedPath);
        if (error == 0) {
            return {trashedPath, std::nullopt, identity};
        }
        if (error != EXDEV) {
            return {std::nullopt, fileErrorFromNumber(error)};
        }
        // The same filesystem, mounted a second time: the trash at the top of this mount.
    }
    const auto own = topTrash(topFolder(realParent, parent.st_dev));
    if (!own) {
        return {std::nullopt, fileErrorFromNumber(EACCES)};
    }
    if (const int error =
            moveInto(*own, path, realPath, split->name, identity, claimed, trashedPath);
        error != 0) {
        return {std::nullopt, fileErrorFromNumber(error)};
    }
    return {trashedPath, std::nullopt, identity};
}

} // namespace dorvik::platform
