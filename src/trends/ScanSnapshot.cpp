#include "trends/ScanSnapshot.h"

#include "base/PathNames.h"
#include "base/Uuid.h"

#include <algorithm>
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
        for (const FileNodePtr& child : current.node->children) {
            if (child->isDirectory && !child->deleted && child->size >= snapshotFolderFloor) {
                pending.push_back(
                    {child.get(), current.depth + 1, childPath(current.path, child->name)});
            }
        }
    }
    if (snapshot.folders.size() > snapshotFolderLimit) {
        std::vector<int64_t> sizes;
        for (const auto& [path, bytes] : snapshot.folders) {
            sizes.push_back(bytes);
        }
        std::nth_element(sizes.begin(), sizes.begin() + (snapshotFolderLimit - 1), sizes.end(),
                         std::greater<>());
        const int64_t smallestKept = sizes[snapshotFolderLimit - 1];
        // Ties at the edge: the first in path order stay.
        size_t tiesKept =
            snapshotFolderLimit - static_cast<size_t>(std::ranges::count_if(
                                      sizes, [&](int64_t b) { return b > smallestKept; }));
        for (auto folder = snapshot.folders.begin(); folder != snapshot.folders.end();) {
            bool keep = folder->second > smallestKept;
            if (folder->second == smallestKept && tiesKept > 0) {
                keep = true;
                --tiesKept;
            }
            folder = keep ? std::next(folder) : snapshot.folders.erase(folder);
        }
    }
    return snapshot;
}

} // namespace dorvik
