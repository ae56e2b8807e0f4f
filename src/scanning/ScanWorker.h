#pragma once

// One thread's share of a scan. It lists one folder at a time: counts the files into the folder's
// node, makes the nodes of the large files and of the subfolders in the order listed, and hands
// back the subfolders still to list. A folder's node and the nodes below it are written only by
// the thread that lists it, so the tree needs no lock; the subfolders' sums are added to their
// folders once the walk is over.

#include "platform/WalkFolder.h"
#include "scanning/Classification.h"
#include "scanning/HardLinkLedger.h"
#include "scanning/ScanProgress.h"
#include "scanning/ScanTally.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

// A folder whose node is made and counted, still to be listed.
struct FolderJob {
    FileNodePtr node;
    platform::WalkFolder folder;
    WalkOrder order;
};

// A folder's node with its own blocks and times, its bucket from where it stands: its canonical
// path, its parent's bucket (none for the root) and the disk and scan it belongs to.
FileNodePtr makeFolderNode(std::string name, std::string_view canonical,
                           std::optional<StorageBucket> parentBucket,
                           const platform::WalkStat& status,
                           const Classification::ScanContext& context);

class ScanWorker {
public:
    // `thread` 0 is the calling thread, the one that reports progress.
    ScanWorker(int thread, const std::set<std::string>& excludedPaths,
               const Classification::ScanContext& context, platform::OpenFolderBudget& openFolders,
               ScanProgress& progress);

    // Lists the job's folder and counts what it holds; the subfolders to list next are added to
    // `subfolders`, in the order listed.
    void scanFolder(const FolderJob& job, std::vector<FolderJob>& subfolders);

    // The progress step after an entry; the path is the folder's own when `name` is empty.
    void afterEntry(std::string_view folderPath, std::string_view name);

    ScanTally& tally() { return tally_; }
    HardLinkLedger& hardLinks() { return hardLinks_; }

private:
    void enterSubfolder(const FolderJob& job, size_t index, std::vector<FolderJob>& subfolders);
    void countFile(const FolderJob& job, size_t index);

    const int thread_;
    const std::set<std::string>& excludedPaths_;
    const Classification::ScanContext& context_;
    platform::OpenFolderBudget& openFolders_;
    ScanProgress& progress_;
    platform::FolderListing listing_;
    ScanTally tally_;
    HardLinkLedger hardLinks_;
};

} // namespace dorvik
