#include "scanning/MeasureFolder.h"

#include "platform/WalkFolder.h"
#include "scanning/HardLinkKey.h"
#include "scanning/WalkPool.h"

#include <deque>
#include <unordered_map>
#include <vector>

namespace dorvik {

namespace {

using platform::EntryType;
using platform::WalkFolder;
using platform::WalkStat;

// One thread's share of a measure. Each hard-linked file is kept with its blocks, once per
// thread; the threads' files are merged at the end, so it counts once whichever thread met it.
struct MeasureWorker {
    platform::FolderListing listing;
    std::vector<WalkFolder> subfolders;
    FolderMeasure measure;
    std::unordered_map<uint64_t, int64_t> linkedFiles;

    // Dangling links count like any other link: the walk does not tell them apart.
    void count(const WalkStat& status) {
        const int64_t allocated = status.blocks * 512;
        if (status.type == EntryType::file && status.links >= 2) {
            linkedFiles.emplace(hardLinkKey(status), allocated);
            return;
        }
        measure.bytes += allocated;
        measure.fileCount += 1;
    }

    void measureFolder(const WalkFolder& folder, platform::OpenFolderBudget& openFolders) {
        platform::listFolder(folder, listing, openFolders);
        for (size_t index = 0; index < listing.size(); ++index) {
            const WalkStat& status = listing.status(index);
            switch (status.type) {
            case EntryType::folder:
                if (!folder.isItselfOrAbove(status)) {
                    measure.bytes += status.blocks * 512;
                    WalkFolder subfolder = folder.subfolder(listing, index);
                    if (subfolder.isOnWalkVolume()) {
                        subfolders.push_back(std::move(subfolder));
                    }
                }
                break;
            case EntryType::file:
            case EntryType::symlink:
            case EntryType::other:
                count(status);
                break;
            case EntryType::unknown:
                break;
            }
        }
    }
};

} // namespace

FolderMeasure measureFolder(const std::string& path, int threads) {
    const WalkStat status = platform::walkStatus(path);
    if (status.type == EntryType::unknown) {
        return {};
    }
    platform::OpenFolderBudget openFolders; // outlives the listings and the jobs
    std::deque<MeasureWorker> workers(static_cast<size_t>(threads < 1 ? 1 : threads));
    if (status.type != EntryType::folder) {
        workers[0].count(status);
    } else {
        workers[0].measure.bytes += status.blocks * 512;
        WalkPool<WalkFolder> pool(static_cast<int>(workers.size()));
        pool.run(WalkFolder(path, status), [&](int thread, const WalkFolder& folder) {
            MeasureWorker& worker = workers[static_cast<size_t>(thread)];
            worker.measureFolder(folder, openFolders);
            pool.add(thread, worker.subfolders);
        });
    }
    FolderMeasure total;
    std::unordered_map<uint64_t, int64_t> linkedFiles;
    for (MeasureWorker& worker : workers) {
        total.bytes += worker.measure.bytes;
        total.fileCount += worker.measure.fileCount;
        for (const auto& [key, allocated] : worker.linkedFiles) {
            if (linkedFiles.emplace(key, allocated).second) {
                total.bytes += allocated;
                total.fileCount += 1;
            }
        }
    }
    return total;
}

} // namespace dorvik
