// Arbitrary bytes as the payload of "last-scan.dvscan": the reader must never crash, hang or
// allocate without bound. Whatever reads is written again and must read back to the same bytes.
// The bytes are read once more under limits small enough for short inputs to reach: a tree
// within them must read under them, and one beyond them must not.

#include "scanning/ScanArchive.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace {

using namespace dorvik;

struct Shape {
    size_t nodes = 0;
    size_t deepest = 0; // levels below the root
};

Shape shapeOf(const FileNode& root) {
    Shape shape;
    std::vector<std::pair<const FileNode*, size_t>> pending{{&root, 0}};
    while (!pending.empty()) {
        const auto [node, level] = pending.back();
        pending.pop_back();
        ++shape.nodes;
        shape.deepest = std::max(shape.deepest, level);
        for (const FileNodePtr& child : node->children) {
            pending.emplace_back(child.get(), level + 1);
        }
    }
    return shape;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ScanArchive::Limits tight;
    tight.deepestLevel = 6;
    tight.mostNodes = 40;
    const auto archived = ScanArchive::decodePayload(std::span(data, size));
    const auto underTight = ScanArchive::decodePayload(std::span(data, size), tight);
    if (!archived) {
        if (underTight) {
            __builtin_trap(); // tighter limits cannot read more
        }
        return 0;
    }
    const Shape shape = shapeOf(*archived->scan.root);
    const bool within = shape.nodes <= tight.mostNodes && shape.deepest <= tight.deepestLevel;
    if (within != underTight.has_value()) {
        __builtin_trap();
    }
    const auto payload = ScanArchive::encodePayload(archived->scan, archived->target);
    const auto again = ScanArchive::decodePayload(payload);
    if (!again || ScanArchive::encodePayload(again->scan, again->target) != payload) {
        __builtin_trap();
    }
    return 0;
}
