#include "scanning/NodeLookup.h"

#include "base/PathNames.h"

namespace dorvik {

FileNodePtr findNode(const FileNodePtr& root, std::string_view path) {
    if (root == nullptr) {
        return nullptr;
    }
    const std::string rootPath = canonicalPath(root->name);
    const std::string wanted = canonicalPath(path);
    if (!isAtOrUnder(wanted, rootPath)) {
        return nullptr;
    }
    const size_t depth = pathPieces(rootPath).size();
    const std::vector<std::string_view> pieces = pathPieces(wanted);
    FileNodePtr node = root;
    for (size_t index = depth; index < pieces.size() && node != nullptr; ++index) {
        FileNodePtr found;
        for (const FileNodePtr& child : node->children) {
            if (child->name == pieces[index]) {
                found = child;
                break;
            }
        }
        node = std::move(found);
    }
    if (node == nullptr || node->deleted) {
        return nullptr;
    }
    return node;
}

} // namespace dorvik
