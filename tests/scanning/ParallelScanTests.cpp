// A scan on many threads against the same scan on one: the same tree node for node, the same
// archive byte for byte, hard links at the path a single walk meets first, progress on the
// calling thread alone.

#include "SameScan.h"
#include "TreeGenerator.h"
#include "scanning/ScanArchive.h"
#include "scanning/Scanner.h"
#include "support/ScratchMount.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

namespace dorvik {
namespace {

ScanResult scanWith(int threads, const std::string& root) {
    auto scan = Scanner({.threads = threads}).scan(root, {}, nullptr);
    if (!scan) {
        ADD_FAILURE() << "no result on " << threads << " threads";
        return {};
    }
    return *scan;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

TEST(ParallelScan, TheSameTreeAndArchiveAsOnOneThread) {
    test::TempDir dir;
    const std::string root = dir / "tree";
    test::makeFolder(root);
    const auto made = bench::generateTree(root, 10000, 11);
    ASSERT_GT(made.hardLinks, 150);
    // Listing a folder for the first time may move its access time on; after that it stays.
    scanWith(oneThread, root);

    ScanResult single = scanWith(oneThread, root);
    ASSERT_GT(single.files.size(), 20u);
    ASSERT_TRUE(ScanArchive::write(single, ScanTarget::folder(root), dir / "one.dvscan"));
    const std::string singleArchive = test::readText(dir / "one.dvscan");
    ASSERT_FALSE(singleArchive.empty());
    for (const int threads : {2, 3, 8, 8, 8}) {
        ScanResult parallel = scanWith(threads, root);
        parallel.duration = single.duration;
        parallel.finishedAt = single.finishedAt;
        SCOPED_TRACE(std::to_string(threads) + " threads");
        test::expectSameScan(single, parallel);
        ASSERT_TRUE(ScanArchive::write(parallel, ScanTarget::folder(root), dir / "many.dvscan"));
        EXPECT_TRUE(test::readText(dir / "many.dvscan") == singleArchive);
    }
}

// Every path of one large file and of one small file lies in its own subtree, at depths that let
// another thread reach a later path before the first; the count goes to the path that find, a
// single walk in the same directory order, prints first.
TEST(ParallelScan, HardLinksCountAtTheFirstPathOfASingleWalk) {
    test::TempDir dir;
    const std::string root = dir / "tree";
    test::writeFile(root + "/origin/big.bin", 1 << 20);
    test::writeFile(root + "/origin/small.txt", 3000);
    for (int folder = 0; folder < 24; ++folder) {
        std::string path = root + "/s" + std::to_string(folder);
        for (int depth = 0; depth < folder % 5; ++depth) {
            path += "/d";
        }
        test::writeFile(path + "/filler.txt", 100);
        test::makeHardLink(root + "/origin/big.bin", path + "/big.bin");
        test::makeHardLink(root + "/origin/small.txt", path + "/small.txt");
    }
    const std::string firstBig = linesOf(
        test::commandOutput("find '" + root + "' -samefile '" + root + "/origin/big.bin'"))[0];
    const std::string firstSmall = linesOf(
        test::commandOutput("find '" + root + "' -samefile '" + root + "/origin/small.txt'"))[0];
    const std::string smallFolder = firstSmall.substr(0, firstSmall.rfind('/'));

    for (const int threads : {oneThread, 2, 4, 8}) {
        SCOPED_TRACE(std::to_string(threads) + " threads");
        const ScanResult scan = scanWith(threads, root);
        EXPECT_EQ(scan.hardLinksSkipped, 2 * 24);
        ASSERT_EQ(scan.files.size(), 1u);
        EXPECT_EQ(scan.files[0]->path(), firstBig);
        EXPECT_EQ(scan.files[0]->size, 1 << 20);
        // Only the folder of the first small path holds it, beside its filler if it has one.
        const int64_t small = test::allocatedBytes(root + "/origin/small.txt");
        std::vector<FileNodePtr> folders{scan.root};
        while (!folders.empty()) {
            const FileNodePtr folder = folders.back();
            folders.pop_back();
            for (const FileNodePtr& child : folder->children) {
                if (child->isDirectory) {
                    folders.push_back(child);
                }
            }
            const std::string filler = folder->path() + "/filler.txt";
            const int64_t expected =
                (test::entryExists(filler) ? test::allocatedBytes(filler) : 0) +
                (folder->path() == smallFolder ? small : 0);
            EXPECT_EQ(folder->smallFilesSize, expected) << folder->path();
        }
    }
}

TEST(ParallelScan, ProgressComesOnTheCallingThreadAndCancellingStops) {
    test::TempDir dir;
    // Many more folders than threads, so that most are still waiting when the scan is cancelled.
    constexpr int folders = 60;
    constexpr int filesEach = 200;
    for (int folder = 0; folder < folders; ++folder) {
        for (int file = 0; file < filesEach; ++file) {
            test::writeFile(dir / ("f" + std::to_string(folder) + "/" + std::to_string(file)), 0);
        }
    }
    const auto caller = std::this_thread::get_id();
    std::vector<int64_t> reported;
    bool elsewhere = false;
    Scanner scanner({.threads = 4, .progressInterval = 0});
    const auto scan = scanner.scan(dir.path(), {}, [&](int64_t files, int64_t, const std::string&) {
        elsewhere = elsewhere || std::this_thread::get_id() != caller;
        reported.push_back(files);
    });
    ASSERT_TRUE(scan);
    EXPECT_FALSE(elsewhere);
    ASSERT_GE(reported.size(), 2u);
    EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
    EXPECT_LE(reported.back(), scan->totalFiles);

    // Cancelled at the first report with files counted, the scan stops at the next folder.
    Scanner cancelled({.threads = 4, .progressInterval = 0});
    int64_t lastReport = 0;
    EXPECT_FALSE(cancelled.scan(dir.path(), {}, [&](int64_t files, int64_t, const std::string&) {
        lastReport = files;
        if (files > 0) {
            cancelled.cancel();
        }
    }));
    EXPECT_LT(lastReport, folders * filesEach);
}

// A folder mounted back onto a folder above it would make the walk go round for ever; one of
// another volume is a folder with its own blocks and nothing in it.
TEST(ParallelScan, MountsInsideTheTree) {
    test::TempDir dir;
    const std::string root = dir / "tree";
    test::writeFile(root + "/a/file.txt", 100);
    test::ScratchMount loop(root + "/a/loop", test::ScratchMount::BindOf{root});
    test::ScratchMount volume(root + "/volume");
    if (!loop.mounted() || !volume.mounted()) {
        GTEST_SKIP() << loop.whyNot() << volume.whyNot();
    }
    test::writeFile(root + "/volume/inside.bin", 1 << 20);
    for (const int threads : {oneThread, 4}) {
        const ScanResult scan = scanWith(threads, root);
        EXPECT_EQ(scan.totalDirectories, 3) << threads; // the root, a and volume
        EXPECT_EQ(scan.totalFiles, 1) << threads;
        for (const FileNodePtr& child : scan.root->children) {
            EXPECT_TRUE(child->children.empty()) << child->name;
            if (child->name == "volume") {
                EXPECT_EQ(child->size, test::allocatedBytes(root + "/volume"));
            }
        }
    }
}

} // namespace
} // namespace dorvik
