#include "platform/WalkFolder.h"

#include <algorithm>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik::platform {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

EntryType typeOf(mode_t mode) {
    if (S_ISDIR(mode)) {
        return EntryType::folder;
    }
    if (S_ISREG(mode)) {
        return EntryType::file;
    }
    if (S_ISLNK(mode)) {
        return EntryType::symlink;
    }
    return EntryType::other;
}

WalkStat walkStat(const struct stat& st) {
    return WalkStat{
        .type = typeOf(st.st_mode),
        .blocks = static_cast<int64_t>(st.st_blocks),
        .size = static_cast<int64_t>(st.st_size),
        .modified = static_cast<int64_t>(st.st_mtim.tv_sec),
        .accessed = static_cast<int64_t>(st.st_atim.tv_sec),
        .links = static_cast<uint64_t>(st.st_nlink),
        .inode = static_cast<uint64_t>(st.st_ino),
        .device = static_cast<uint64_t>(st.st_dev),
    };
}

bool isDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// A subfolder's path relative to its anchor must stay below PATH_MAX whatever its name.
constexpr size_t longestAnchoredPath = PATH_MAX - NAME_MAX - 2;

} // namespace

// One folder of the chain from the root down, for finding loops.
struct WalkFolder::Lineage {
    uint64_t device = 0;
    uint64_t inode = 0;
    std::shared_ptr<const Lineage> above;

    Lineage(uint64_t folderDevice, uint64_t folderInode, std::shared_ptr<const Lineage> parent)
        : device(folderDevice), inode(folderInode), above(std::move(parent)) {}

    // Lets go of the chain above one link at a time: a chain as deep as a disk can make would
    // overflow the stack if each link let go of the next itself. A link that goes while the
    // outermost one unwinds hands the one above it to that unwinding; each is let go of as any
    // shared pointer, since other threads may hold the same links.
    ~Lineage() {
        thread_local std::vector<std::shared_ptr<const Lineage>>* unwinding = nullptr;
        if (unwinding != nullptr) {
            unwinding->push_back(std::move(above));
            return;
        }
        std::vector<std::shared_ptr<const Lineage>> pending;
        pending.push_back(std::move(above));
        unwinding = &pending;
        while (!pending.empty()) {
            std::shared_ptr<const Lineage> next = std::move(pending.back());
            pending.pop_back();
        }
        unwinding = nullptr;
    }
    Lineage(const Lineage&) = delete;
    Lineage& operator=(const Lineage&) = delete;
};

struct WalkAnchor {
    int fd = -1;
    OpenFolderBudget* budget = nullptr; // none for a folder kept open for long paths
    WalkAnchor(int descriptor, OpenFolderBudget* takenFrom) : fd(descriptor), budget(takenFrom) {}
    ~WalkAnchor() {
        close(fd);
        if (budget != nullptr) {
            budget->giveBack();
        }
    }
    WalkAnchor(const WalkAnchor&) = delete;
    WalkAnchor& operator=(const WalkAnchor&) = delete;
};

bool OpenFolderBudget::take() {
    int left = left_.load(std::memory_order_relaxed);
    while (left > 0) {
        if (left_.compare_exchange_weak(left, left - 1, std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

WalkStat walkStatus(const std::string& path) {
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) {
        return WalkStat{};
    }
    return walkStat(st);
}

WalkFolder::WalkFolder(std::string path, const WalkStat& status)
    : path_(std::move(path)), status_(status), walkDevice_(status.device),
      lineage_(std::make_shared<const Lineage>(status.device, status.inode, nullptr)) {}

bool WalkFolder::isItselfOrAbove(const WalkStat& status) const {
    for (const Lineage* link = lineage_.get(); link != nullptr; link = link->above.get()) {
        if (link->inode == status.inode && link->device == status.device) {
            return true;
        }
    }
    return false;
}

WalkFolder WalkFolder::subfolder(const FolderListing& listing, size_t index) const {
    WalkFolder child;
    const std::string_view name = listing.name(index);
    child.path_.reserve(path_.size() + 1 + name.size());
    child.path_ = path_;
    if (child.path_.empty() || child.path_.back() != '/') {
        child.path_ += '/';
    }
    child.path_ += name;
    child.status_ = listing.status(index);
    child.walkDevice_ = walkDevice_;
    child.lineage_ =
        std::make_shared<const Lineage>(child.status_.device, child.status_.inode, lineage_);
    child.anchor_ = listing.subfolderAnchor_;
    child.pathBelowAnchor_ = listing.subfolderPathBelowAnchor_;
    return child;
}

FolderListing::FolderListing() = default;
FolderListing::~FolderListing() = default;

void listFolder(const WalkFolder& folder, FolderListing& listing, OpenFolderBudget& budget) {
    listing.complete_ = false;
    listing.entries_.clear();
    listing.names_.clear();
    listing.subfolderAnchor_.reset();

    int fd = -1;
    size_t namedLength = folder.path_.size(); // what is opened by name, the anchor's part left out
    if (folder.anchor_ == nullptr) {
        fd = open(folder.path_.c_str(), folderFlags);
    } else {
        namedLength = folder.path_.size() - folder.pathBelowAnchor_;
        fd =
            openat(folder.anchor_->fd, folder.path_.c_str() + folder.pathBelowAnchor_, folderFlags);
    }
    if (fd < 0) {
        return;
    }
    // Opened by a path, not by a descriptor of its parent: a folder on the way may have been
    // replaced since the parent was listed, even by a link to another place.
    struct stat opened {};
    if (fstat(fd, &opened) != 0 || static_cast<uint64_t>(opened.st_dev) != folder.status_.device ||
        static_cast<uint64_t>(opened.st_ino) != folder.status_.inode) {
        close(fd);
        return;
    }

    alignas(dirent64) char buffer[32768];
    bool complete = false;
    while (true) {
        const ssize_t got = getdents64(fd, buffer, sizeof buffer);
        if (got <= 0) {
            complete = got == 0;
            break;
        }
        for (ssize_t offset = 0; offset < got;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + offset);
            offset += entry->d_reclen;
            if (isDotOrDotDot(entry->d_name)) {
                continue;
            }
            FolderListing::Entry& listed = listing.entries_.emplace_back();
            listed.nameOffset = listing.names_.size();
            listing.names_ += entry->d_name;
            listed.nameLength = listing.names_.size() - listed.nameOffset;
            struct stat st {};
            if (fstatat(fd, entry->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0) {
                listed.status = walkStat(st);
            }
        }
    }
    if (!complete) {
        listing.entries_.clear();
        listing.names_.clear();
        close(fd);
        return;
    }
    listing.complete_ = true;
    const bool hasSubfolders = std::ranges::any_of(
        listing.entries_, [](const auto& entry) { return entry.status.type == EntryType::folder; });
    const bool pathsTooLong = namedLength >= longestAnchoredPath;
    if (hasSubfolders && (pathsTooLong || budget.take())) {
        listing.subfolderAnchor_ =
            std::make_shared<const WalkAnchor>(fd, pathsTooLong ? nullptr : &budget);
        // A subfolder's path is this one's, a "/" unless this is "/", then its name.
        const bool endsInSlash = !folder.path_.empty() && folder.path_.back() == '/';
        listing.subfolderPathBelowAnchor_ = folder.path_.size() + (endsInSlash ? 0 : 1);
    } else {
        close(fd);
        listing.subfolderAnchor_ = folder.anchor_;
        listing.subfolderPathBelowAnchor_ = folder.pathBelowAnchor_;
    }
}

} // namespace dorvik::platform
