#include "reclaim/DuplicateSelection.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

// Two groups: a, b, c (a the oldest) and d, e; nodes under one root folder so that paths exist.
class DuplicateSelectionTest : public testing::Test {
protected:
    void SetUp() override {
        root = std::make_shared<FileNode>(dir.path(), true, false, FileKind{}, StorageBucket{});
        for (const char* name : {"a", "b", "c", "d", "e"}) {
            auto node = std::make_shared<FileNode>(name, false, false, FileKind{}, StorageBucket{});
            node->size = 1000;
            FileNode::adopt(root, node);
            nodes[name] = node.get();
        }
        groups.resize(2);
        groups[0].files = {root->children[0], root->children[1], root->children[2]};
        groups[1].files = {root->children[3], root->children[4]};
        groups[0].size = groups[1].size = 1000;
    }
    std::string path(const char* name) const { return dir / name; }

    test::TempDir dir;
    FileNodePtr root;
    std::map<std::string, const FileNode*> nodes;
    std::vector<DuplicateGroup> groups;
};

TEST_F(DuplicateSelectionTest, EveryGroupMustKeepAFile) {
    struct Case {
        std::vector<std::string> selected;
        bool keeps;
    };
    for (const Case& c : {Case{{}, true}, Case{{"b", "c", "e"}, true}, Case{{"a", "b", "c"}, false},
                          Case{{"d", "e"}, false}, Case{{"a", "e"}, true}}) {
        DuplicateSelection selection;
        for (const std::string& name : c.selected) {
            selection.insert(nodes[name]);
        }
        EXPECT_EQ(keepsOneCopy(groups, selection), c.keeps) << testing::PrintToString(c.selected);
    }
    // "Select All Copies" leaves each group its first file, so it always keeps one.
    EXPECT_EQ(allCopies(groups), (DuplicateSelection{nodes["b"], nodes["c"], nodes["e"]}));
    EXPECT_TRUE(keepsOneCopy(groups, allCopies(groups)));
}

TEST_F(DuplicateSelectionTest, PairsGoToTheFirstFileLeftOutAndWholeGroupsAreSkipped) {
    const DuplicateSelection selection{nodes["a"], nodes["c"], nodes["d"], nodes["e"]};
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const auto& [copy, original] : sharingPairs(groups, selection)) {
        pairs.emplace_back(copy->name, original->name);
    }
    EXPECT_EQ(pairs, (std::vector<std::pair<std::string, std::string>>{{"a", "b"}, {"c", "b"}}));

    const auto items = duplicatePlanItems(groups, selection);
    ASSERT_EQ(items.size(), 4u);
    EXPECT_EQ(items[0].path, path("a"));
    EXPECT_EQ(items[3].path, path("e"));
    EXPECT_EQ(items[1].name, "c");
    EXPECT_EQ(items[1].size, 1000);
    EXPECT_EQ(items[1].removal, Removal::trash);
}

TEST_F(DuplicateSelectionTest, ConvertedCopiesAndTheirOriginalBecomeShared) {
    const DuplicateSelection selection{nodes["a"], nodes["c"], nodes["e"]};
    markShared(groups, selection, {path("c"), path("e")});
    EXPECT_EQ(groups[0].shared, (std::set<const FileNode*>{nodes["b"], nodes["c"]}));
    EXPECT_EQ(groups[0].recoverableBytes(), 1000); // a is still a copy of its own
    EXPECT_EQ(groups[1].shared, (std::set<const FileNode*>{nodes["d"], nodes["e"]}));
    EXPECT_EQ(groups[1].recoverableBytes(), 0);

    // A group with nothing converted stays as it was.
    std::vector<DuplicateGroup> untouched = {groups[1]};
    untouched[0].shared.clear();
    markShared(untouched, selection, {path("c")});
    EXPECT_TRUE(untouched[0].shared.empty());
}

} // namespace
} // namespace dorvik
