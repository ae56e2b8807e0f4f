#include "scanning/LargestFolders.h"

#include <algorithm>
#include <utility>

namespace dorvik {

namespace {

bool isAncestor(const FileNode* ancestor, const FileNode& node) {
    for (FileNodePtr up = node.parent.lock(); up != nullptr; up = up->parent.lock()) {
        if (up.get() == ancestor) {
            return true;
        }
    }
    return false;
}

bool related(const FileNode& a, const FileNode& b) {
    return isAncestor(&a, b) || isAncestor(&b, a);
}

std::vector<FileNodePtr> candidates(const FileNodePtr& root) {
    using namespace LargestFolderLimits;
    std::vector<FileNodePtr> found;
    std::vector<std::pair<FileNodePtr, int>> stack{{root, 0}};
    while (!stack.empty()) {
        auto [node, depth] = std::move(stack.back());
        stack.pop_back();
        if (depth >= firstDepth && node->size > floor) {
            found.push_back(node);
        }
        if (depth > deepestEntered || node->isPackage) {
            continue;
        }
        for (const FileNodePtr& child : node->children) {
            if (child->isDirectory && !child->deleted && child->size > floor) {
                stack.emplace_back(child, depth + 1);
            }
        }
    }
    return found;
}

} // namespace

std::vector<FileNodePtr> largestFolders(const FileNodePtr& root) {
    using namespace LargestFolderLimits;
    if (root == nullptr) {
        return {};
    }
    std::vector<FileNodePtr> ordered = candidates(root);
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const FileNodePtr& a, const FileNodePtr& b) { return a->size > b->size; });
    std::vector<FileNodePtr> kept;
    for (const FileNodePtr& candidate : ordered) {
        const auto relative = std::find_if(kept.begin(), kept.end(), [&](const FileNodePtr& k) {
            return related(*k, *candidate);
        });
        if (relative == kept.end()) {
            kept.push_back(candidate);
            if (kept.size() == count) {
                break;
            }
        } else if (static_cast<double>(candidate->size) >
                   replacingShare * static_cast<double>((*relative)->size)) {
            *relative = candidate;
        }
    }
    return kept;
}

} // namespace dorvik
