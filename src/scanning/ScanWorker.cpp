#include "scanning/ScanWorker.h"

#include "base/PathNames.h"
#include "scanning/Classification.h"
#include "scanning/HardLinkKey.h"

namespace dorvik {

namespace {

using platform::EntryType;
using platform::WalkStat;

WalkOrder orderBelow(const WalkOrder& folder, size_t index) {
    WalkOrder order;
    order.reserve(folder.size() + 1);
    order = folder;
    order.push_back(static_cast<uint32_t>(index));
    return order;
}

} // namespace

FileNodePtr makeFolderNode(std::string name, std::string_view canonical,
                           std::optional<StorageBucket> parentBucket, const WalkStat& status,
                           const Classification::ScanContext& context) {
    const std::vector<std::string_view> components = pathPieces(canonical);
    if (parentBucket == StorageBucket::other) {
        parentBucket.reset();
    }
    const StorageBucket bucket =
        Classification::directoryBucket(components, name, parentBucket, context)
            .value_or(StorageBucket::other);
    const bool isPackage =
        name.find('.') != std::string::npos && Classification::isPackageName(name);
    const FileKind kind = Classification::directoryKindOfName(name);
    auto node = std::make_shared<FileNode>(std::move(name), true, isPackage, kind, bucket);
    node->size = status.blocks * 512;
    node->modified = static_cast<double>(status.modified);
    node->accessed = static_cast<double>(status.accessed);
    return node;
}

ScanWorker::ScanWorker(int thread, const std::set<std::string>& excludedPaths,
                       const Classification::ScanContext& context,
                       platform::OpenFolderBudget& openFolders, ScanProgress& progress)
    : thread_(thread), excludedPaths_(excludedPaths), context_(context), openFolders_(openFolders),
      progress_(progress) {}

void ScanWorker::scanFolder(const FolderJob& job, std::vector<FolderJob>& subfolders) {
    platform::listFolder(job.folder, listing_, openFolders_);
    if (!listing_.complete()) {
        // It keeps its own blocks and shows as unreadable.
        job.node->unreadable = true;
        ++tally_.unreadable;
        afterEntry(job.folder.path(), {});
        return;
    }
    for (size_t index = 0; index < listing_.size(); ++index) {
        switch (listing_.status(index).type) {
        case EntryType::folder:
            enterSubfolder(job, index, subfolders);
            break;
        case EntryType::file:
        case EntryType::symlink:
        case EntryType::other:
            countFile(job, index);
            break;
        case EntryType::unknown:
            ++tally_.unreadable;
            afterEntry(job.folder.path(), listing_.name(index));
            break;
        }
    }
}

void ScanWorker::afterEntry(std::string_view folderPath, std::string_view name) {
    progress_.publish(thread_, tally_.files, tally_.bytes);
    if (thread_ == 0) {
        progress_.afterEntry(tally_.files, folderPath, name);
    }
}

void ScanWorker::enterSubfolder(const FolderJob& job, size_t index,
                                std::vector<FolderJob>& subfolders) {
    const WalkStat& status = listing_.status(index);
    if (job.folder.isItselfOrAbove(status)) {
        return; // a loop through a bind mount
    }
    platform::WalkFolder folder = job.folder.subfolder(listing_, index);
    const std::string canonical = canonicalPath(folder.path());
    if (excludedPaths_.contains(canonical)) {
        return; // no node, and nothing below it counts
    }
    FileNodePtr node = makeFolderNode(std::string(listing_.name(index)), canonical,
                                      job.node->bucket, status, context_);
    FileNode::adopt(job.node, node);
    tally_.countFolder(*node);
    afterEntry(folder.path(), {});
    // A folder on another volume keeps its own blocks and is not listed.
    if (folder.isOnWalkVolume()) {
        subfolders.push_back(
            FolderJob{std::move(node), std::move(folder), orderBelow(job.order, index)});
    }
}

void ScanWorker::countFile(const FolderJob& job, size_t index) {
    const WalkStat& status = listing_.status(index);
    const std::string_view name = listing_.name(index);
    FileNode& folder = *job.node;
    const FileKind kind = Classification::fileKindOfName(name.data(), name.size());
    const StorageBucket bucket =
        folder.bucket == StorageBucket::other ? Classification::defaultBucket(kind) : folder.bucket;
    const int64_t allocated = status.blocks * 512;
    FileNodePtr node;
    if (allocated >= largeFileThreshold) {
        node = std::make_shared<FileNode>(std::string(name), false, false, kind, bucket);
        node->size = allocated;
        node->logicalSize = status.size;
        node->fileCount = 1;
        node->modified = static_cast<double>(status.modified);
        node->accessed = static_cast<double>(status.accessed);
        FileNode::adopt(job.node, node);
    }
    if (status.type == EntryType::file && status.links >= 2) {
        hardLinks_.record(LinkedPath{
            .key = hardLinkKey(status),
            .order = orderBelow(job.order, index),
            .folder = job.node,
            .node = std::move(node),
            .allocated = allocated,
            .logicalSize = status.size,
            .kind = kind,
            .bucket = bucket,
        });
        return;
    }
    tally_.countFile(folder, allocated, status.size, kind, bucket);
    afterEntry(job.folder.path(), name);
}

} // namespace dorvik
