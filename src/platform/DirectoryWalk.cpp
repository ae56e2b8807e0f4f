#include "platform/DirectoryWalk.h"

#include <fts.h>
#include <sys/stat.h>

namespace dorvik::platform {

struct DirectoryWalk::Handle {
    FTS* fts = nullptr;
    FTSENT* current = nullptr;
};

namespace {

WalkEntryType entryType(int ftsInfo) {
    switch (ftsInfo) {
    case FTS_D:
        return WalkEntryType::directoryPre;
    case FTS_DP:
        return WalkEntryType::directoryPost;
    case FTS_F:
        return WalkEntryType::file;
    case FTS_SL:
        return WalkEntryType::symlink;
    case FTS_SLNONE:
        return WalkEntryType::brokenSymlink;
    case FTS_DEFAULT:
        return WalkEntryType::otherFile;
    case FTS_DNR:
        return WalkEntryType::unreadableDirectory;
    case FTS_NS:
        return WalkEntryType::noStat;
    case FTS_ERR:
        return WalkEntryType::error;
    default:
        return WalkEntryType::other;
    }
}

bool hasStat(WalkEntryType type) {
    return type != WalkEntryType::noStat && type != WalkEntryType::error &&
           type != WalkEntryType::other;
}

} // namespace

DirectoryWalk::DirectoryWalk(const std::string& rootPath) : handle_(std::make_unique<Handle>()) {
    std::string copy = rootPath;
    char* paths[] = {copy.data(), nullptr};
    handle_->fts = fts_open(paths, FTS_PHYSICAL | FTS_NOCHDIR | FTS_XDEV, nullptr);
}

DirectoryWalk::~DirectoryWalk() {
    if (handle_->fts != nullptr) {
        fts_close(handle_->fts);
    }
}

bool DirectoryWalk::isOpen() const {
    return handle_->fts != nullptr;
}

const WalkEntry* DirectoryWalk::next() {
    if (handle_->fts == nullptr) {
        return nullptr;
    }
    FTSENT* ent = nullptr;
    while ((ent = fts_read(handle_->fts)) != nullptr) {
        if (ent->fts_path != nullptr) {
            break;
        }
    }
    handle_->current = ent;
    if (ent == nullptr) {
        return nullptr;
    }
    entry_.type = entryType(ent->fts_info);
    entry_.path = std::string_view(ent->fts_path, ent->fts_pathlen);
    if (ent->fts_level == FTS_ROOTLEVEL) {
        entry_.name = entry_.path;
    } else {
        entry_.name = entry_.path.substr(entry_.path.size() - ent->fts_namelen);
    }
    if (hasStat(entry_.type) && ent->fts_statp != nullptr) {
        const struct stat& st = *ent->fts_statp;
        entry_.stat = WalkStat{
            .blocks = static_cast<int64_t>(st.st_blocks),
            .size = static_cast<int64_t>(st.st_size),
            .modified = static_cast<int64_t>(st.st_mtim.tv_sec),
            .accessed = static_cast<int64_t>(st.st_atim.tv_sec),
            .links = static_cast<uint64_t>(st.st_nlink),
            .inode = static_cast<uint64_t>(st.st_ino),
            .device = static_cast<uint64_t>(st.st_dev),
            .isRegularFile = S_ISREG(st.st_mode),
        };
    } else {
        entry_.stat = WalkStat{};
    }
    return &entry_;
}

void DirectoryWalk::skipCurrent() {
    if (handle_->fts != nullptr && handle_->current != nullptr) {
        fts_set(handle_->fts, handle_->current, FTS_SKIP);
    }
}

long DirectoryWalk::mark() const {
    return handle_->current != nullptr ? handle_->current->fts_number : 0;
}

void DirectoryWalk::setMark(long value) {
    if (handle_->current != nullptr) {
        handle_->current->fts_number = value;
    }
}

} // namespace dorvik::platform
