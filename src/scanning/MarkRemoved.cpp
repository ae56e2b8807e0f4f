#include "scanning/MarkRemoved.h"

#include "base/PathNames.h"

#include <vector>

namespace dorvik {

namespace {

// The set is sorted, so the first path not before "<folder>/" is the only one to look at.
bool anyPathBelow(const std::set<std::string>& paths, const std::string& directoryPath) {
    const auto candidate = paths.lower_bound(childPath(directoryPath, ""));
    return candidate != paths.end() && isUnder(*candidate, directoryPath);
}

// `sign` -1 takes the node's numbers off its ancestors, +1 gives them back.
void addToAncestors(const FileNode& node, int64_t sign) {
    for (FileNodePtr up = node.parent.lock(); up != nullptr; up = up->parent.lock()) {
        up->size += sign * node.size;
        up->logicalSize += sign * node.logicalSize;
        up->fileCount += sign * node.fileCount;
    }
}

// The kinds' totals and counts of the live file nodes at or below `node`.
void addToKinds(ScanResult& scan, const FileNodePtr& node, int64_t sign) {
    std::vector<FileNodePtr> stack{node};
    while (!stack.empty()) {
        FileNodePtr each = std::move(stack.back());
        stack.pop_back();
        if (!each->isDirectory) {
            scan.kindTotals[each->kind] += sign * each->size;
            scan.kindCounts[each->kind] += sign;
            continue;
        }
        for (const FileNodePtr& child : each->children) {
            if (!child->deleted) {
                stack.push_back(child);
            }
        }
    }
}

// Visits the nodes whose paths are in `paths`, going down only into folders that hold one.
template <typename Visit>
void visitPaths(const ScanResult& scan, const std::set<std::string>& paths, Visit visit) {
    std::vector<FileNodePtr> stack{scan.root};
    while (!stack.empty()) {
        FileNodePtr node = std::move(stack.back());
        stack.pop_back();
        const std::string path = node->path();
        if (paths.contains(path)) {
            visit(node, path);
            continue;
        }
        if (node->isDirectory && anyPathBelow(paths, path)) {
            stack.insert(stack.end(), node->children.begin(), node->children.end());
        }
    }
}

} // namespace

void markRemoved(ScanResult& scan, const std::set<std::string>& removedPaths) {
    if (scan.root == nullptr || removedPaths.empty()) {
        return;
    }
    visitPaths(scan, removedPaths, [&scan](const FileNodePtr& node, const std::string&) {
        if (!node->deleted) {
            addToKinds(scan, node, -1);
            node->deleted = true;
            addToAncestors(*node, -1);
        }
        // Taken from the total again on a repeated mark, and a directory's whole size
        // leaves its own bucket whatever lay below it: totals follow what was removed.
        scan.bucketTotals[node->bucket] -= node->size;
    });
}

std::set<std::string> markRestored(ScanResult& scan, const std::set<std::string>& restoredPaths) {
    std::set<std::string> missing = restoredPaths;
    if (scan.root == nullptr) {
        return missing;
    }
    visitPaths(scan, restoredPaths,
               [&scan, &missing](const FileNodePtr& node, const std::string& path) {
                   missing.erase(path);
                   if (!node->deleted) {
                       return; // removed by another process: the scan never let it go
                   }
                   node->deleted = false;
                   addToAncestors(*node, +1);
                   addToKinds(scan, node, +1);
                   scan.bucketTotals[node->bucket] += node->size;
               });
    return missing;
}

} // namespace dorvik
