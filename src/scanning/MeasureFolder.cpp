#include "scanning/MeasureFolder.h"

#include "platform/DirectoryWalk.h"
#include "scanning/HardLinkKey.h"

#include <unordered_set>

namespace dorvik {

FolderMeasure measureFolder(const std::string& path) {
    using platform::WalkEntryType;
    FolderMeasure measure;
    platform::DirectoryWalk walk(path);
    if (!walk.isOpen()) {
        return measure;
    }
    std::unordered_set<uint64_t> seenLinks;
    while (const platform::WalkEntry* entry = walk.next()) {
        const WalkEntryType type = entry->type;
        // Dangling links are left out here, unlike in a scan.
        if (type != WalkEntryType::file && type != WalkEntryType::directoryPre &&
            type != WalkEntryType::otherFile && type != WalkEntryType::symlink) {
            continue;
        }
        if (type == WalkEntryType::file && entry->stat.links >= 2 &&
            !seenLinks.insert(hardLinkKey(entry->stat)).second) {
            continue;
        }
        measure.bytes += entry->stat.blocks * 512;
        if (type != WalkEntryType::directoryPre) {
            ++measure.fileCount;
        }
    }
    return measure;
}

} // namespace dorvik
