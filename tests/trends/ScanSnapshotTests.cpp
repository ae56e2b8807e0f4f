#include "base/Uuid.h"
#include "scanning/Scanner.h"
#include "support/TempDir.h"
#include "trends/ScanSnapshot.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace dorvik {
namespace {

FileNodePtr folder(const std::string& name, int64_t size, bool package = false) {
    auto node =
        std::make_shared<FileNode>(name, true, package, FileKind::other, StorageBucket::other);
    node->size = size;
    return node;
}

FileNodePtr add(const FileNodePtr& parent, FileNodePtr child) {
    FileNode::adopt(parent, child);
    return child;
}

TEST(ScanSnapshot, KeepsTheLargestFoldersUpToItsLimit) {
    ScanResult result;
    result.root = folder("/data", 1'000'000'000'000);
    // 2,100 folders of the floor, 10 larger ones, and ties at the edge.
    for (int i = 0; i < 2100; ++i) {
        add(result.root, folder("f" + std::to_string(10000 + i), 16'000'000));
    }
    for (int i = 0; i < 10; ++i) {
        add(result.root, folder("big" + std::to_string(i), 17'000'000));
    }
    const ScanSnapshot snapshot = makeScanSnapshot(result, 1);
    ASSERT_EQ(snapshot.folders.size(), snapshotFolderLimit);
    EXPECT_TRUE(snapshot.folders.contains("/data"));
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(snapshot.folders.contains("/data/big" + std::to_string(i)));
    }
    // Of the ties, the first in path order stay.
    EXPECT_TRUE(snapshot.folders.contains("/data/f10000"));
    EXPECT_TRUE(snapshot.folders.contains("/data/f11988"));
    EXPECT_FALSE(snapshot.folders.contains("/data/f11989"));
}

TEST(ScanSnapshot, RecordsFoldersDownToTheDepthAndAboveTheFloor) {
    ScanResult result;
    result.root = folder("/System/Volumes/Data/Users/me", 10); // the root is always recorded
    result.bucketTotals = {{StorageBucket::documents, 5}, {StorageBucket::other, 7}};
    const FileNodePtr& root = result.root;

    auto exact = add(root, folder("exact", 16'000'000));
    add(exact, folder("inside", 16'000'000));
    // Smaller than the floor: neither it nor anything below is recorded. (A real folder can't
    // be smaller than what it holds; the tree is built by hand to show the cut.)
    auto under = add(root, folder("under", 15'999'999));
    add(under, folder("larger", 20'000'000));
    add(root, folder("gone", 50'000'000))->deleted = true;
    add(root, std::make_shared<FileNode>("movie.mov", false, false, FileKind::video,
                                         StorageBucket::video))
        ->size = 90'000'000;
    auto app = add(root, folder("Big.app", 5'000'000'000, true));
    add(app, folder("Contents", 5'000'000'000));
    FileNodePtr level = root;
    std::string path = "/Users/me";
    std::map<std::string, int64_t> chain;
    for (int depth = 1; depth <= 8; ++depth) {
        level = add(level, folder("d" + std::to_string(depth), 20'000'000));
        path += "/d" + std::to_string(depth);
        if (depth <= snapshotFolderDepth) {
            chain[path] = 20'000'000;
        }
    }

    const ScanSnapshot snapshot = makeScanSnapshot(result, 1234.5);
    EXPECT_TRUE(Uuid::parse(snapshot.id).has_value());
    EXPECT_EQ(snapshot.date, 1234.5);
    EXPECT_EQ(snapshot.root, "/Users/me");
    EXPECT_EQ(snapshot.total, 10);
    EXPECT_EQ(snapshot.buckets, (std::map<std::string, int64_t>{{"1", 5}, {"11", 7}}));
    std::map<std::string, int64_t> expected = {
        {"/Users/me", 10},
        {"/Users/me/exact", 16'000'000},
        {"/Users/me/exact/inside", 16'000'000},
        {"/Users/me/Big.app", 5'000'000'000},
    };
    expected.insert(chain.begin(), chain.end());
    EXPECT_EQ(snapshot.folders, expected);
    EXPECT_NE(makeScanSnapshot(result, 1234.5).id, snapshot.id);
}

TEST(ScanSnapshot, RootsEndingInASlashGetNoSecondOne) {
    for (const std::string rootName : {"/", "/System/Volumes/Data"}) {
        ScanResult result;
        result.root = folder(rootName, 40'000'000);
        add(result.root, folder("Users", 30'000'000));
        const ScanSnapshot snapshot = makeScanSnapshot(result, 0);
        EXPECT_EQ(snapshot.root, "/") << rootName;
        EXPECT_EQ(snapshot.folders,
                  (std::map<std::string, int64_t>{{"/", 40'000'000}, {"/Users", 30'000'000}}))
            << rootName;
    }
}

TEST(ScanSnapshot, FromARealScan) {
    test::TempDir temp;
    constexpr int64_t big = 17'000'000;
    std::string deep = temp.path();
    for (int depth = 1; depth <= 9; ++depth) {
        deep += "/level" + std::to_string(depth);
    }
    test::writeFile(deep + "/big.bin", big);
    test::writeFile(temp / "Tool.app/Contents/MacOS/tool", big);
    test::writeFile(temp / "small/notes.txt", 1'000'000);

    Scanner scanner;
    const auto result = scanner.scan(temp.path(), {}, nullptr);
    ASSERT_TRUE(result.has_value());
    const ScanSnapshot snapshot = makeScanSnapshot(*result, 0);

    EXPECT_EQ(snapshot.root, temp.path());
    EXPECT_EQ(snapshot.total, result->root->size);
    std::string path = temp.path();
    for (int depth = 1; depth <= 8; ++depth) {
        path += "/level" + std::to_string(depth);
        // Real sizes: the file and each folder's own blocks.
        EXPECT_EQ(snapshot.folders.count(path), depth <= snapshotFolderDepth ? 1u : 0u) << path;
        if (depth <= snapshotFolderDepth) {
            EXPECT_GE(snapshot.folders.at(path), test::allocatedBytes(deep + "/big.bin"));
        }
    }
    EXPECT_EQ(snapshot.folders.count(temp / "Tool.app"), 1u);
    EXPECT_EQ(snapshot.folders.count(temp / "Tool.app/Contents"), 0u);
    EXPECT_EQ(snapshot.folders.count(temp / "small"), 0u);
    EXPECT_EQ(snapshot.folders.size(), 1u + snapshotFolderDepth + 1u);
    int64_t bucketSum = 0;
    for (const auto& [key, bytes] : snapshot.buckets) {
        bucketSum += bytes;
    }
    EXPECT_EQ(bucketSum, snapshot.total);
}

} // namespace
} // namespace dorvik
