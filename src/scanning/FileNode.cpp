#include "scanning/FileNode.h"

#include <iterator>

namespace dorvik {

std::string FileNode::path() const {
    std::vector<const FileNode*> chain;
    std::vector<FileNodePtr> keepAlive; // parents are weak; hold them while we read their names
    const FileNode* node = this;
    chain.push_back(node);
    while (FileNodePtr up = node->parent.lock()) {
        node = up.get();
        chain.push_back(node);
        keepAlive.push_back(std::move(up));
    }
    std::string result = chain.back()->name;
    for (auto it = chain.rbegin() + 1; it != chain.rend(); ++it) {
        if (result.empty() || result.back() != '/') {
            result += '/';
        }
        result += (*it)->name;
    }
    return result;
}

FileNode::~FileNode() {
    std::vector<FileNodePtr> pending = std::move(children);
    while (!pending.empty()) {
        FileNodePtr node = std::move(pending.back());
        pending.pop_back();
        // Only a node that goes with this reference gives up its children; one held elsewhere,
        // by a view or by the scan's file list, keeps its subtree.
        if (node.use_count() == 1) {
            std::move(node->children.begin(), node->children.end(), std::back_inserter(pending));
            node->children.clear();
        }
    }
}

void FileNode::adopt(const FileNodePtr& parent, const FileNodePtr& child) {
    child->parent = parent;
    parent->children.push_back(child);
}

} // namespace dorvik
