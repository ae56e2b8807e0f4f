#pragma once

// A folder held by its descriptor, so that whatever is done inside it is done to the folder that
// was opened, even if its path is made to lead elsewhere meanwhile. It is opened without following
// any link on the way, and knows its device, inode and mount, so that a later look can tell
// whether a path still leads to it and whether an entry inside it belongs to another mount.

#include "platform/FileError.h"

#include <cstdint>
#include <optional>
#include <string>

namespace dorvik::platform {

// What makes an entry itself: its device and inode, and the mount it was reached through (a bind
// mount shows the same device and inodes through another mount).
struct FileIdentity {
    uint64_t device = 0;
    uint64_t inode = 0;
    uint64_t mount = 0;
    bool isFolder = false;

    bool sameEntry(const FileIdentity& other) const {
        return device == other.device && inode == other.inode;
    }
    bool operator==(const FileIdentity&) const = default;
};

// The identity of the entry `name` in the folder `folder` (a link is not followed); with an
// empty name, of the descriptor itself. None with errno set when it cannot be read.
std::optional<FileIdentity> identityAt(int folder, const std::string& name);

// A path cut into the folder that holds the item and the item's name. None for "/", a relative
// path and a last name of "", "." or "..": those name no item that could be removed.
struct ItemPath {
    std::string folder;
    std::string name;
};
std::optional<ItemPath> splitItemPath(const std::string& path);

class PinnedFolder {
public:
    // Opens the folder at the absolute `path`. A link anywhere on the way is refused (ELOOP), as
    // is anything but a folder at the end.
    explicit PinnedFolder(const std::string& path);
    ~PinnedFolder();
    PinnedFolder(PinnedFolder&& other) noexcept;
    PinnedFolder& operator=(PinnedFolder&&) = delete;
    PinnedFolder(const PinnedFolder&) = delete;
    PinnedFolder& operator=(const PinnedFolder&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    // Why it did not open; none when it is open.
    std::optional<FileError> error() const;
    int errorNumber() const { return errorNumber_; }
    int descriptor() const { return descriptor_; }
    const FileIdentity& identity() const { return identity_; }

    // True when `path`, opened again the same way, is still this very folder.
    bool stillAt(const std::string& path) const;

    // The path of the folder as the system now names it (no link in it).
    std::optional<std::string> currentPath() const;

private:
    int descriptor_ = -1;
    int errorNumber_ = 0;
    FileIdentity identity_;
};

} // namespace dorvik::platform
