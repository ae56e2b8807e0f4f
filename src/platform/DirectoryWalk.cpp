// The walk behind the scanner and Measure folder. It keeps the order and the visits of the C
// library's fts with FTS_PHYSICAL | FTS_NOCHDIR | FTS_XDEV — a directory in pre-order, its
// entries in directory order, the directory again in post-order; a skipped directory or one on
// another volume comes back at once in post-order; a directory that cannot be listed comes back
// as unreadable instead of in post-order — but reads each entry's status relative to its
// directory's descriptor. glibc's fts asks for every entry by its full path, which made a whole
// walk slower than du's; this way the kernel resolves one name per entry.
//
// A directory is listed and its entries' status read in full before the first of them is
// handed out. Each folder is opened relative to its parent's descriptor, never by its whole
// path, so depth has no limit: a path past PATH_MAX is walked like any other. Only the deepest
// few folders keep their descriptors; leaving a folder whose parent's was closed opens the
// parent again through "..", checked to be the folder met on the way down. So a walk holds a
// fixed number of descriptors at any depth, and a shallow tree never opens anything twice.

#include "platform/DirectoryWalk.h"

#include "platform/DirectoryListing.h"

#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dorvik::platform {

namespace {

// Directory descriptors a walk keeps open at most, besides the one it is opening.
constexpr size_t keptDescriptors = 32;

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isSameFile(int fd, const struct stat& expected) {
    struct stat st {};
    return fstat(fd, &st) == 0 && st.st_dev == expected.st_dev && st.st_ino == expected.st_ino;
}

WalkStat walkStat(const struct stat& st) {
    return WalkStat{
        .blocks = static_cast<int64_t>(st.st_blocks),
        .size = static_cast<int64_t>(st.st_size),
        .modified = static_cast<int64_t>(st.st_mtim.tv_sec),
        .accessed = static_cast<int64_t>(st.st_atim.tv_sec),
        .links = static_cast<uint64_t>(st.st_nlink),
        .inode = static_cast<uint64_t>(st.st_ino),
        .device = static_cast<uint64_t>(st.st_dev),
        .isRegularFile = S_ISREG(st.st_mode),
    };
}

WalkEntryType typeOf(const struct stat& st) {
    if (S_ISDIR(st.st_mode)) {
        return WalkEntryType::directoryPre;
    }
    if (S_ISREG(st.st_mode)) {
        return WalkEntryType::file;
    }
    if (S_ISLNK(st.st_mode)) {
        return WalkEntryType::symlink;
    }
    return WalkEntryType::otherFile;
}

} // namespace

struct DirectoryWalk::Handle {
    // A directory handed out in pre-order and not yet left.
    struct Frame {
        size_t pathLength = 0; // its path is pathBuffer's first pathLength bytes
        size_t nameLength = 0; // of its last component
        struct stat status {};
        int fd = -1; // open from its listing until it is left, unless closed to keep few open
        long mark = 0;
        bool listed = false;
        bool skip = false;
        std::vector<ListedEntry> children;
        size_t nextChild = 0;
    };

    std::string rootPath;
    bool started = false;
    bool finished = false;
    dev_t rootDevice = 0;
    std::string pathBuffer;
    std::vector<Frame> frames;
    long currentMark = 0;
    long* currentMarkSlot = &currentMark; // where the mark of the current entry lives

    size_t openFrames = 0; // frames whose fd is open
    size_t lowestOpen = 0; // no frame above this one has its fd open

    ~Handle() {
        for (const Frame& frame : frames) {
            if (frame.fd >= 0) {
                close(frame.fd);
            }
        }
    }

    // Makes the directory whose path is in pathBuffer the current one.
    void enter(size_t nameLength, const struct stat& status) {
        Frame& frame = frames.emplace_back();
        frame.pathLength = pathBuffer.size();
        frame.nameLength = nameLength;
        frame.status = status;
        currentMarkSlot = &frame.mark;
    }

    // Opens the top frame's directory: the root by its path, any other folder by its name in
    // its parent. Past the descriptors kept, the highest one open is closed.
    void openTop() {
        Frame& top = frames.back();
        if (frames.size() == 1) {
            top.fd = open(rootPath.c_str(), folderFlags);
        } else {
            const std::string name = pathBuffer.substr(top.pathLength - top.nameLength);
            top.fd = openat(frames[frames.size() - 2].fd, name.c_str(), folderFlags);
        }
        if (top.fd < 0) {
            return;
        }
        ++openFrames;
        while (openFrames > keptDescriptors && lowestOpen + 1 < frames.size()) {
            Frame& highest = frames[lowestOpen++];
            if (highest.fd >= 0) {
                close(highest.fd);
                highest.fd = -1;
                --openFrames;
            }
        }
    }

    // Closes the top frame before it is popped, first opening its parent again from it if the
    // parent's descriptor was closed. A parent that cannot be opened again, or that is no
    // longer the folder met on the way down, lists its remaining folders as unreadable.
    void closeTop() {
        Frame& top = frames.back();
        if (frames.size() >= 2 && frames[frames.size() - 2].fd < 0) {
            Frame& parent = frames[frames.size() - 2];
            parent.fd = top.fd >= 0 ? openat(top.fd, "..", folderFlags) : -1;
            if (parent.fd < 0 || !isSameFile(parent.fd, parent.status)) {
                reopenByPath(parent);
            }
            if (parent.fd >= 0) {
                ++openFrames;
                lowestOpen = frames.size() - 2;
            }
        }
        if (top.fd >= 0) {
            close(top.fd);
            top.fd = -1;
            --openFrames;
        }
    }

    // The last resort for a folder whose path is short enough to name.
    void reopenByPath(Frame& frame) {
        if (frame.fd >= 0) {
            close(frame.fd);
            frame.fd = -1;
        }
        if (frame.pathLength < PATH_MAX) {
            frame.fd = open(pathBuffer.substr(0, frame.pathLength).c_str(), folderFlags);
            if (frame.fd >= 0 && !isSameFile(frame.fd, frame.status)) {
                close(frame.fd);
                frame.fd = -1;
            }
        }
    }
};

DirectoryWalk::DirectoryWalk(const std::string& rootPath) : handle_(std::make_unique<Handle>()) {
    handle_->rootPath = rootPath;
}

DirectoryWalk::~DirectoryWalk() = default;

bool DirectoryWalk::isOpen() const {
    return !handle_->rootPath.empty();
}

const WalkEntry* DirectoryWalk::next() {
    Handle& h = *handle_;
    if (h.rootPath.empty() || h.finished) {
        return nullptr;
    }
    h.currentMark = 0;
    h.currentMarkSlot = &h.currentMark;

    if (!h.started) {
        h.started = true;
        h.pathBuffer = h.rootPath;
        entry_.path = h.pathBuffer;
        entry_.name = entry_.path;
        struct stat st {};
        if (lstat(h.rootPath.c_str(), &st) != 0) {
            entry_.type = WalkEntryType::noStat;
            entry_.stat = WalkStat{};
            h.finished = true;
            return &entry_;
        }
        entry_.type = typeOf(st);
        entry_.stat = walkStat(st);
        if (entry_.type != WalkEntryType::directoryPre) {
            h.finished = true;
            return &entry_;
        }
        h.rootDevice = st.st_dev;
        h.enter(h.pathBuffer.size(), st);
        return &entry_;
    }

    while (!h.frames.empty()) {
        Handle::Frame& top = h.frames.back();
        h.pathBuffer.resize(top.pathLength);
        if (!top.listed) {
            top.listed = true;
            const bool enter = !top.skip && top.status.st_dev == h.rootDevice;
            DirectoryListing listing;
            if (enter) {
                h.openTop();
                listing = listDirectory(top.fd);
                top.children = std::move(listing.entries);
            }
            if (enter && !listing.complete) {
                entry_.type = WalkEntryType::unreadableDirectory;
                entry_.path = h.pathBuffer;
                entry_.name = entry_.path.substr(entry_.path.size() - top.nameLength);
                entry_.stat = walkStat(top.status);
                h.currentMark = top.mark;
                h.closeTop();
                h.frames.pop_back();
                return &entry_;
            }
        }
        if (top.nextChild == top.children.size()) {
            entry_.type = WalkEntryType::directoryPost;
            entry_.path = h.pathBuffer;
            entry_.name = entry_.path.substr(entry_.path.size() - top.nameLength);
            entry_.stat = walkStat(top.status);
            h.currentMark = top.mark;
            h.closeTop();
            h.frames.pop_back();
            if (h.frames.empty()) {
                h.finished = true;
            }
            return &entry_;
        }

        ListedEntry& child = top.children[top.nextChild++];
        if (h.pathBuffer.empty() || h.pathBuffer.back() != '/') {
            h.pathBuffer += '/';
        }
        h.pathBuffer += child.name;
        entry_.path = h.pathBuffer;
        entry_.name = entry_.path.substr(entry_.path.size() - child.name.size());
        if (!child.statusRead) {
            entry_.type = WalkEntryType::noStat;
            entry_.stat = WalkStat{};
            return &entry_;
        }
        entry_.type = typeOf(child.status);
        entry_.stat = walkStat(child.status);
        if (entry_.type == WalkEntryType::directoryPre) {
            for (const Handle::Frame& ancestor : h.frames) {
                if (ancestor.status.st_ino == child.status.st_ino &&
                    ancestor.status.st_dev == child.status.st_dev) {
                    entry_.type = WalkEntryType::other; // a cycle through a bind mount
                    return &entry_;
                }
            }
            const size_t nameLength = child.name.size();
            const struct stat status = child.status;
            // The child's own listing is not needed any more once it is a frame of its own.
            std::string().swap(child.name);
            h.enter(nameLength, status);
        }
        return &entry_;
    }
    h.finished = true;
    return nullptr;
}

void DirectoryWalk::skipCurrent() {
    Handle& h = *handle_;
    if (entry_.type == WalkEntryType::directoryPre && !h.frames.empty() &&
        h.currentMarkSlot == &h.frames.back().mark) {
        h.frames.back().skip = true;
    }
}

long DirectoryWalk::mark() const {
    return *handle_->currentMarkSlot;
}

void DirectoryWalk::setMark(long value) {
    *handle_->currentMarkSlot = value;
}

} // namespace dorvik::platform
