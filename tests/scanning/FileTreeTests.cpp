#include "base/PathNames.h"
#include "scanning/FileNode.h"
#include "scanning/MarkRemoved.h"
#include "scanning/ScanTarget.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

FileNodePtr directory(const std::string& name, StorageBucket bucket = StorageBucket::other) {
    return std::make_shared<FileNode>(name, true, false, FileKind::other, bucket);
}

FileNodePtr file(const FileNodePtr& parent, const std::string& name, int64_t size,
                 StorageBucket bucket = StorageBucket::other) {
    auto node = std::make_shared<FileNode>(name, false, false, FileKind::other, bucket);
    node->size = size;
    node->logicalSize = size / 2;
    node->fileCount = 1;
    FileNode::adopt(parent, node);
    return node;
}

FileNodePtr subfolder(const FileNodePtr& parent, const std::string& name,
                      StorageBucket bucket = StorageBucket::other) {
    auto node = directory(name, bucket);
    FileNode::adopt(parent, node);
    return node;
}

// Adds every node's numbers to its ancestors, as a finished walk would have.
void sumUp(const FileNodePtr& node) {
    for (const FileNodePtr& child : node->children) {
        sumUp(child);
        node->size += child->size;
        node->logicalSize += child->logicalSize;
        node->fileCount += child->fileCount;
    }
}

TEST(FileTree, PathJoinsNamesFromTheRoot) {
    auto home = directory("/Users/ann");
    auto music = subfolder(home, "Music");
    auto song = file(music, "song.mp3", 1 << 20);
    EXPECT_EQ(home->path(), "/Users/ann");
    EXPECT_EQ(music->path(), "/Users/ann/Music");
    EXPECT_EQ(song->path(), "/Users/ann/Music/song.mp3");

    auto slash = directory("/");
    auto tmp = subfolder(slash, "tmp");
    EXPECT_EQ(tmp->path(), "/tmp");

    auto data = directory("/System/Volumes/Data");
    auto x = file(subfolder(subfolder(data, "Users"), "ann"), "x", 1);
    EXPECT_EQ(x->path(), "/System/Volumes/Data/Users/ann/x");
    EXPECT_EQ(canonicalPath(x->path()), "/Users/ann/x");
    EXPECT_EQ(displayPath(x->path(), "/Users/ann"), "~/x");
}

TEST(FileTree, PathStopsAtTheHighestAncestorAlive) {
    FileNodePtr leaf;
    {
        auto root = directory("/r");
        leaf = file(subfolder(root, "a"), "f", 1);
    }
    EXPECT_EQ(leaf->path(), "f");
}

// A tree as deep as a hostile archive or a deep disk makes must go without a recursion per
// level; a node still held elsewhere keeps what lies below it.
TEST(FileTree, DeepTreesAreTornDownWithoutRecursion) {
    EXPECT_EXIT(
        {
            FileNodePtr kept;
            {
                auto root = directory("/r");
                FileNodePtr at = root;
                for (int level = 0; level < 1'000'000; ++level) {
                    at = subfolder(at, "d");
                    if (level == 10) {
                        kept = at;
                    }
                }
            }
            // The chain below the kept node is whole; only the parents above it are gone.
            size_t below = 0;
            for (FileNode* at = kept.get(); !at->children.empty(); at = at->children[0].get()) {
                ++below;
            }
            const bool whole = below == 1'000'000 - 11 && kept->parent.expired();
            kept.reset();
            std::exit(whole ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(FileTree, ScanTargets) {
    EXPECT_EQ(ScanTarget::folder("/Users/ann/Projects").title(), "Projects");
    EXPECT_EQ(ScanTarget::folder("/Users/ann/Projects/").title(), "Projects");
    EXPECT_EQ(ScanTarget::folder("/").title(), "/");
    EXPECT_EQ(ScanTarget::folder("/a").rootPath(), "/a");
    EXPECT_EQ(ScanTarget::wholeDisk().title(), "Entire disk");
    EXPECT_EQ(ScanTarget::home().title(), "Home folder");
    EXPECT_EQ(ScanTarget::folder("/a"), ScanTarget::folder("/a"));
    EXPECT_NE(ScanTarget::folder("/a"), ScanTarget::folder("/b"));
    EXPECT_NE(ScanTarget::home(), ScanTarget::wholeDisk());
    // No data volume on this system, so a whole disk is walked from "/".
    EXPECT_EQ(ScanTarget::wholeDisk().rootPath(), "/");
}

struct SampleTree {
    ScanResult scan;
    FileNodePtr docs, photos, big, nested, deep;

    SampleTree() {
        auto root = directory("/r");
        root->size = 4096;
        docs = subfolder(root, "docs", StorageBucket::documents);
        docs->size = 4096;
        big = file(docs, "big.pdf", 1000000, StorageBucket::documents);
        photos = subfolder(root, "photos", StorageBucket::images);
        photos->size = 4096;
        nested = subfolder(photos, "2024", StorageBucket::images);
        nested->size = 4096;
        deep = file(nested, "a.jpg", 2000000, StorageBucket::images);
        sumUp(root);
        scan.root = root;
        scan.rootPath = "/r";
        scan.files = {big, deep};
        scan.bucketTotals = {{StorageBucket::other, 4096},
                             {StorageBucket::documents, 1004096},
                             {StorageBucket::images, 2008192}};
    }
};

TEST(FileTree, MarkingAFileSubtractsFromEveryAncestor) {
    SampleTree tree;
    markRemoved(tree.scan, {"/r/photos/2024/a.jpg"});
    EXPECT_TRUE(tree.deep->deleted);
    EXPECT_EQ(tree.nested->size, 4096);
    EXPECT_EQ(tree.nested->fileCount, 0);
    EXPECT_EQ(tree.nested->logicalSize, 0);
    EXPECT_EQ(tree.photos->size, 8192);
    EXPECT_EQ(tree.scan.root->size, 4096 + 1004096 + 8192);
    EXPECT_EQ(tree.scan.root->fileCount, 1);
    EXPECT_EQ(tree.scan.bucketTotals[StorageBucket::images], 8192);

    // A second mark changes no node but takes the size off the bucket again.
    markRemoved(tree.scan, {"/r/photos/2024/a.jpg"});
    EXPECT_EQ(tree.photos->size, 8192);
    EXPECT_EQ(tree.scan.bucketTotals[StorageBucket::images], 8192 - 2000000);
}

TEST(FileTree, MarkingAFolderLeavesItsDescendantsAsTheyWere) {
    SampleTree tree;
    markRemoved(tree.scan, {"/r/photos"});
    EXPECT_TRUE(tree.photos->deleted);
    EXPECT_FALSE(tree.nested->deleted);
    EXPECT_FALSE(tree.deep->deleted);
    EXPECT_EQ(tree.nested->size, 2004096);
    EXPECT_EQ(tree.scan.root->size, 4096 + 1004096);
    // The folder's whole size leaves its own bucket.
    EXPECT_EQ(tree.scan.bucketTotals[StorageBucket::images], 0);
    EXPECT_EQ(tree.scan.files.size(), 2u);
}

TEST(FileTree, KindsFollowARemovalAndAllComesBackWithTheRestore) {
    const struct {
        std::string removed;
        int64_t kindBytesLeft;
        int64_t kindFilesLeft;
    } cases[] = {
        {"/r/photos/2024/a.jpg", 1000000, 1}, // a file
        {"/r/photos", 1000000, 1},            // the folder that holds it
        {"/r/docs", 2000000, 1},              // a folder of other files
    };
    for (const auto& [removed, kindBytesLeft, kindFilesLeft] : cases) {
        SampleTree tree;
        tree.scan.kindTotals = {{FileKind::other, 3000000}};
        tree.scan.kindCounts = {{FileKind::other, 2}};
        const ScanResult before = tree.scan;
        const int64_t rootSize = tree.scan.root->size;
        const int64_t rootFiles = tree.scan.root->fileCount;
        const int64_t photosSize = tree.photos->size;

        markRemoved(tree.scan, {removed});
        EXPECT_EQ(tree.scan.kindTotals[FileKind::other], kindBytesLeft) << removed;
        EXPECT_EQ(tree.scan.kindCounts[FileKind::other], kindFilesLeft) << removed;

        // Restoring along with a path the tree never had: that one is handed back.
        const auto missing = markRestored(tree.scan, {removed, "/r/elsewhere/new.bin"});
        EXPECT_EQ(missing, std::set<std::string>{"/r/elsewhere/new.bin"}) << removed;
        EXPECT_FALSE(tree.deep->deleted || tree.photos->deleted || tree.big->deleted) << removed;
        EXPECT_EQ(tree.scan.root->size, rootSize) << removed;
        EXPECT_EQ(tree.scan.root->fileCount, rootFiles) << removed;
        EXPECT_EQ(tree.photos->size, photosSize) << removed;
        EXPECT_EQ(tree.scan.bucketTotals, before.bucketTotals) << removed;
        EXPECT_EQ(tree.scan.kindTotals, before.kindTotals) << removed;
        EXPECT_EQ(tree.scan.kindCounts, before.kindCounts) << removed;

        // A node that is live (another process removed and restored it) changes nothing, and the
        // scan has it, so it is not handed back.
        EXPECT_EQ(markRestored(tree.scan, {removed}), std::set<std::string>{});
        EXPECT_EQ(tree.scan.root->size, rootSize) << removed;
    }
}

TEST(FileTree, MarkingMatchesOnlyExactRealPaths) {
    const std::set<std::set<std::string>> misses = {
        {"/r/photos/2024/b.jpg"}, // not in the tree
        {"/r/photo"},             // a prefix of a name
        {"/R/photos"},            // another case
        {"r/photos"},             // another form
    };
    for (const auto& paths : misses) {
        SampleTree tree;
        markRemoved(tree.scan, paths);
        EXPECT_EQ(tree.scan.root->size, 4096 * 4 + 3000000) << *paths.begin();
        EXPECT_FALSE(tree.photos->deleted);
        EXPECT_EQ(tree.scan.bucketTotals.size(), 3u);
    }
}

TEST(FileTree, MarkingBelowASlashRoot) {
    auto root = directory("/");
    auto tmp = subfolder(root, "tmp");
    auto f = file(tmp, "f", 600000);
    sumUp(root);
    ScanResult scan;
    scan.root = root;
    markRemoved(scan, {"/tmp/f"});
    EXPECT_TRUE(f->deleted);
    EXPECT_EQ(root->size, 0);
    EXPECT_EQ(scan.bucketTotals[StorageBucket::other], -600000);
}

} // namespace
} // namespace dorvik
