#include "trends/ScanSnapshot.h"

#include "scanning/ScanPaths.h"
#include "system/Uuid.h"

#include <vector>

namespace dorvik {

std::string bucketKey(StorageBucket bucket) {
    return std::to_string(static_cast<unsigned>(bucket));
}

ScanSnapshot makeScanSnapshot(const ScanResult& result, double date) {
    ScanSnapshot snapshot;
    snapshot.id = Uuid::make();
    snapshot.date = date;
    if (!result.root) {
        return snapshot;
    }
    snapshot.root = canonicalPath(result.root->name);
    snapshot.total = result.root->size;
    for (const auto& [bucket, bytes] : result.bucketTotals) {
        snapshot.buckets[bucketKey(bucket)] = bytes;
    }

    struct Pending {
        const FileNode* node;
        int depth;
        std::string path; // the real path, before normalisation
    };
    std::vector<Pending> pending{{result.root.get(), 0, result.root->name}};
    while (!pending.empty()) {
        Pending current = std::move(pending.back());
        pending.pop_back();
        snapshot.folders[canonicalPath(current.path)] = current.node->size;
        if (current.depth >= snapshotFolderDepth || current.node->isPackage) {
            continue;
        }
        const std::string prefix = current.path.ends_with('/') ? current.path : current.path + "/";
        for (const FileNodePtr& child : current.node->children) {
            if (child->isDirectory && !child->deleted && child->size >= snapshotFolderFloor) {
                pending.push_back({child.get(), current.depth + 1, prefix + child->name});
            }
        }
    }
    return snapshot;
}

} // namespace dorvik
