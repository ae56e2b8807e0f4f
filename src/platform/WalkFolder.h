#pragma once

// The pieces of a walk that threads hand to each other: a folder met on the way, which any thread
// may list later, and the listing of one folder with the status of every entry in it. A walk made
// of them is physical and stays on one volume, like the C library's fts with FTS_PHYSICAL |
// FTS_XDEV: a link is an entry of its own, never followed; a folder on another volume is met but
// not listed; a folder that is the same as one above it (a bind mount looping back) is not met.
//
// A folder is opened in the nearest folder above it that is still open, or by its whole path,
// and checked to be the folder its parent listed; any thread may do it, so the folders of one
// level can go to different threads. Few folders stay open after their listing: as many as the
// walk's budget allows, and those whose subfolders' paths may reach PATH_MAX bytes, which cannot
// be named. So depth has no limit, and a walk keeps its budget plus one descriptor for about
// every 3,800 bytes of path below its deepest folders still waiting to be listed.

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::platform {

enum class EntryType : uint8_t {
    folder,
    file,    // a regular file
    symlink, // never followed
    other,   // sockets, fifos, devices
    unknown, // the status could not be read
};

// The parts of an entry's status that the program uses; all 0 for an unknown one.
struct WalkStat {
    EntryType type = EntryType::unknown;
    int64_t blocks = 0; // 512-byte units
    int64_t size = 0;
    int64_t modified = 0; // whole seconds since 1970
    int64_t accessed = 0;
    uint64_t links = 0;
    uint64_t inode = 0;
    uint64_t device = 0;
};

// The status of `path` itself, a link not followed.
WalkStat walkStatus(const std::string& path);

class FolderListing;

// An open folder that deeper folders are opened relative to.
struct WalkAnchor;

// How many folders one walk may keep open besides those it lists and those it must keep for paths
// too long to name. A folder kept open lets its subfolders be opened by their name in it, which
// spares the kernel looking up every folder of a deep path again; with none left a subfolder is
// opened by its path, or relative to the nearest folder above it still open. Shared by the walk's
// threads; it must outlive every folder and listing of the walk.
class OpenFolderBudget {
public:
    // Enough for the folders above the ones being listed in most trees, and few beside the
    // thousand descriptors a process may usually hold.
    static constexpr int usualFolders = 24;

    explicit OpenFolderBudget(int folders = usualFolders) : left_(folders) {}
    OpenFolderBudget(const OpenFolderBudget&) = delete;
    OpenFolderBudget& operator=(const OpenFolderBudget&) = delete;

    bool take();
    void giveBack() { left_.fetch_add(1, std::memory_order_relaxed); }

private:
    std::atomic<int> left_;
};

class WalkFolder {
public:
    // The root of a walk: the folder at `path`, whose status is `status`. Its device is the
    // walk's volume.
    WalkFolder(std::string path, const WalkStat& status);

    // As walked, from the root's path.
    const std::string& path() const { return path_; }
    const WalkStat& status() const { return status_; }

    // Whether the walk lists this folder: it lies on the root's volume.
    bool isOnWalkVolume() const { return status_.device == walkDevice_; }

    // Whether a folder with this status is this one or lies above it, so that entering it
    // would go round in a loop.
    bool isItselfOrAbove(const WalkStat& status) const;

    // The folder at `index` of this folder's `listing`, which must be a folder.
    WalkFolder subfolder(const FolderListing& listing, size_t index) const;

private:
    struct Lineage;
    friend void listFolder(const WalkFolder& folder, FolderListing& listing,
                           OpenFolderBudget& budget);

    WalkFolder() = default;

    std::string path_;
    WalkStat status_;
    uint64_t walkDevice_ = 0;
    std::shared_ptr<const Lineage> lineage_; // this folder and those above it
    // The open folder above this one that it is opened relative to, and where the rest of the
    // path after it starts in path_; none while it is opened by its whole path.
    std::shared_ptr<const WalkAnchor> anchor_;
    size_t pathBelowAnchor_ = 0;
};

// The entries of one folder, "." and ".." left out, in the order the file system gives them,
// each with its status. A listing is meant to be filled again and again by one thread, keeping
// its memory.
class FolderListing {
public:
    FolderListing();
    ~FolderListing();
    FolderListing(const FolderListing&) = delete;
    FolderListing& operator=(const FolderListing&) = delete;

    // False when the folder could not be opened, was no longer the folder met, or could not be
    // read to the end; the listing is then empty.
    bool complete() const { return complete_; }
    size_t size() const { return entries_.size(); }
    std::string_view name(size_t index) const {
        const Entry& entry = entries_[index];
        return std::string_view(names_).substr(entry.nameOffset, entry.nameLength);
    }
    const WalkStat& status(size_t index) const { return entries_[index].status; }

private:
    friend void listFolder(const WalkFolder& folder, FolderListing& listing,
                           OpenFolderBudget& budget);
    friend class WalkFolder;

    struct Entry {
        size_t nameOffset = 0;
        size_t nameLength = 0;
        WalkStat status;
    };

    bool complete_ = false;
    std::vector<Entry> entries_;
    std::string names_;
    // What the subfolders are opened relative to, as in WalkFolder.
    std::shared_ptr<const WalkAnchor> subfolderAnchor_;
    size_t subfolderPathBelowAnchor_ = 0;
};

// Lists `folder` into `listing`, replacing what it held. Opens the folder once and keeps it open
// for its subfolders while `budget` allows, or when their paths may grow too long to name.
void listFolder(const WalkFolder& folder, FolderListing& listing, OpenFolderBudget& budget);

} // namespace dorvik::platform
