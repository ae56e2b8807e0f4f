#pragma once

// A physical, one-volume, pre- and post-order walk of a directory tree, as the C library's fts
// gives it. The scanner and Measure folder are written against this so that nothing above the
// platform layer includes <fts.h>.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace dorvik::platform {

enum class WalkEntryType {
    directoryPre,  // a directory, before its contents
    directoryPost, // a directory, after its contents (or at once when skipped or on another volume)
    file,          // a regular file
    symlink,       // a symbolic link, never followed
    brokenSymlink, // a symbolic link whose target is missing
    otherFile,     // sockets, fifos, devices
    unreadableDirectory, // a directory that could not be listed
    noStat,              // an entry whose status could not be read
    error,               // any other error
    other,               // cycles, dot entries and the like
};

// The parts of an entry's status that the program uses.
struct WalkStat {
    int64_t blocks = 0; // 512-byte units
    int64_t size = 0;
    int64_t modified = 0; // whole seconds since 1970
    int64_t accessed = 0;
    uint64_t links = 0;
    uint64_t inode = 0;
    uint64_t device = 0;
    bool isRegularFile = false;
};

struct WalkEntry {
    WalkEntryType type = WalkEntryType::other;
    std::string_view path; // as walked, from the root path given
    std::string_view name; // the last component; the whole path for the root
    WalkStat stat;
};

class DirectoryWalk {
public:
    explicit DirectoryWalk(const std::string& rootPath);
    ~DirectoryWalk();
    DirectoryWalk(const DirectoryWalk&) = delete;
    DirectoryWalk& operator=(const DirectoryWalk&) = delete;

    bool isOpen() const;

    // The next entry, or nullptr when the walk is over. The entry stays valid until the next call.
    const WalkEntry* next();

    // Do not descend into the current directory entry; it is reported next as directoryPost.
    void skipCurrent();

    // A number the caller keeps on the current entry; it is still there at the entry's post-order
    // visit and when its listing fails. Entries start at 0.
    long mark() const;
    void setMark(long value);

private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
    WalkEntry entry_;
};

} // namespace dorvik::platform
