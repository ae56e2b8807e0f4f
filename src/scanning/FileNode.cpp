#include "scanning/FileNode.h"

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

void FileNode::adopt(const FileNodePtr& parent, const FileNodePtr& child) {
    child->parent = parent;
    parent->children.push_back(child);
}

} // namespace dorvik
