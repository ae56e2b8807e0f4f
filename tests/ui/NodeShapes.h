#pragma once

// Small hand-made trees for the tests of the ring map: names and allocated sizes as written,
// nothing on disk behind them, since the map reads only the tree.

#include "scanning/FileNode.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace dorvik::test {

struct NodeShape {
    std::string name;
    int64_t size = 0;
    bool directory = true;
    std::vector<NodeShape> children = {};
    bool deleted = false;
};

inline NodeShape folder(std::string name, int64_t size, std::vector<NodeShape> children = {}) {
    return {std::move(name), size, true, std::move(children)};
}

inline NodeShape file(std::string name, int64_t size) {
    return {std::move(name), size, false};
}

inline NodeShape deleted(NodeShape shape) {
    shape.deleted = true;
    return shape;
}

inline FileNodePtr build(const NodeShape& shape) {
    auto node = std::make_shared<FileNode>(shape.name, shape.directory, false, FileKind::other,
                                           StorageBucket::other);
    node->size = shape.size;
    node->deleted = shape.deleted;
    for (const NodeShape& child : shape.children) {
        FileNode::adopt(node, build(child));
    }
    return node;
}

// The first node named `name` at or below `node`, or none.
inline FileNodePtr findNode(const FileNodePtr& node, const std::string& name) {
    if (node->name == name) {
        return node;
    }
    for (const FileNodePtr& child : node->children) {
        if (FileNodePtr found = findNode(child, name)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace dorvik::test
