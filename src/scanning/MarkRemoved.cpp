#include "scanning/MarkRemoved.h"

#include <vector>

namespace dorvik {

namespace {

bool anyPathBelow(const std::set<std::string>& paths, const std::string& directoryPath) {
    const std::string prefix = directoryPath.ends_with('/') ? directoryPath : directoryPath + '/';
    const auto candidate = paths.lower_bound(prefix);
    return candidate != paths.end() && candidate->starts_with(prefix);
}

void subtractFromAncestors(const FileNode& node) {
    for (FileNodePtr up = node.parent.lock(); up != nullptr; up = up->parent.lock()) {
        up->size -= node.size;
        up->logicalSize -= node.logicalSize;
        up->fileCount -= node.fileCount;
    }
}

} // namespace

void markRemoved(ScanResult& scan, const std::set<std::string>& removedPaths) {
    if (scan.root == nullptr || removedPaths.empty()) {
        return;
    }
    std::vector<FileNodePtr> stack{scan.root};
    while (!stack.empty()) {
        FileNodePtr node = std::move(stack.back());
        stack.pop_back();
        const std::string path = node->path();
        if (removedPaths.contains(path)) {
            if (!node->deleted) {
                node->deleted = true;
                subtractFromAncestors(*node);
            }
            // Taken from the total again on a repeated mark, and a directory's whole size
            // leaves its own bucket whatever lay below it: totals follow what was removed.
            scan.bucketTotals[node->bucket] -= node->size;
            continue;
        }
        if (!node->isDirectory) {
            continue;
        }
        if (anyPathBelow(removedPaths, path)) {
            stack.insert(stack.end(), node->children.begin(), node->children.end());
        }
    }
}

} // namespace dorvik
