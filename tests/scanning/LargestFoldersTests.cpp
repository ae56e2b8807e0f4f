// The largest folders of the Overview: from depth 2, above 200 MiB, never a folder with its own
// subfolder, a deep folder taking its parent's place only when it holds more than 70% of it.

#include "scanning/LargestFolders.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dorvik {
namespace {

constexpr int64_t floorSize = 209'715'200;

FileNodePtr folder(const FileNodePtr& parent, const std::string& name, int64_t size,
                   bool package = false) {
    auto node =
        std::make_shared<FileNode>(name, true, package, FileKind::other, StorageBucket::other);
    node->size = size;
    if (parent != nullptr) {
        FileNode::adopt(parent, node);
    }
    return node;
}

std::vector<std::string> namesOf(const std::vector<FileNodePtr>& nodes) {
    std::vector<std::string> names;
    for (const FileNodePtr& node : nodes) {
        names.push_back(node->name);
    }
    return names;
}

TEST(LargestFolders, AFolderCountsAboveTheFloorFromDepthTwo) {
    const struct {
        int64_t size;
        bool chosen;
    } cases[] = {{floorSize, false}, {floorSize + 1, true}};
    for (const auto& [size, chosen] : cases) {
        SCOPED_TRACE(size);
        const FileNodePtr root = folder(nullptr, "/", 100 * floorSize);
        const FileNodePtr top = folder(root, "top", 50 * floorSize); // depth 1: never named
        folder(top, "two", size);
        EXPECT_EQ(namesOf(largestFolders(root)),
                  chosen ? std::vector<std::string>{"two"} : std::vector<std::string>{});
    }
}

TEST(LargestFolders, ADeepFolderReplacesItsParentOnlyAboveSeventyPercent) {
    const int64_t parentSize = 1'000'000'000;
    const struct {
        int64_t childSize;
        std::vector<std::string> chosen;
    } cases[] = {
        {700'000'000, {"parent"}},
        {700'000'001, {"child"}},
    };
    for (const auto& [childSize, chosen] : cases) {
        SCOPED_TRACE(childSize);
        const FileNodePtr root = folder(nullptr, "/", 10 * parentSize);
        const FileNodePtr top = folder(root, "top", 5 * parentSize);
        const FileNodePtr parent = folder(top, "parent", parentSize);
        folder(parent, "child", childSize);
        EXPECT_EQ(namesOf(largestFolders(root)), chosen);
    }
}

TEST(LargestFolders, NineUnrelatedFoldersLargestFirstNotEnteringPackagesOrBelowDepthSix) {
    const FileNodePtr root = folder(nullptr, "/", 1000 * floorSize);
    const FileNodePtr top = folder(root, "top", 500 * floorSize);
    for (int i = 1; i <= 10; ++i) {
        folder(top, "f" + std::to_string(i), (10 + i) * floorSize);
    }
    // A package is named but nothing inside it is.
    const FileNodePtr app = folder(top, "Big.app", 40 * floorSize, true);
    folder(app, "Contents", 39 * floorSize);
    // Depth 6 is named, but not entered: its child at depth 7 never is.
    FileNodePtr chain = top;
    for (int depth = 2; depth <= 6; ++depth) {
        chain = folder(chain, "d" + std::to_string(depth), 30 * floorSize);
    }
    folder(chain, "d7", 29 * floorSize);

    // d2…d6 are one line of descent: each holds all of the one above, so the deepest wins.
    EXPECT_EQ(
        namesOf(largestFolders(root)),
        (std::vector<std::string>{"Big.app", "d6", "f10", "f9", "f8", "f7", "f6", "f5", "f4"}));
    EXPECT_TRUE(largestFolders(nullptr).empty());
}

TEST(LargestFolders, RemovedFoldersAreNotEntered) {
    const FileNodePtr root = folder(nullptr, "/", 100 * floorSize);
    const FileNodePtr top = folder(root, "top", 50 * floorSize);
    const FileNodePtr gone = folder(top, "gone", 20 * floorSize);
    gone->deleted = true;
    folder(top, "kept", 2 * floorSize);
    EXPECT_EQ(namesOf(largestFolders(root)), std::vector<std::string>{"kept"});
}

} // namespace
} // namespace dorvik
