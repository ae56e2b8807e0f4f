#include "SameScan.h"
#include "scanning/MeasureFolder.h"
#include "scanning/Scanner.h"
#include "support/Environment.h"
#include "support/TempDir.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik {
namespace {

using test::TempDir;

// The scan on four threads, after checking that it is the same as on one.
ScanResult scanOrFail(const std::string& root, const std::set<std::string>& excluded = {}) {
    // Listing a folder for the first time may move its access time on; after that it stays.
    Scanner({.threads = oneThread}).scan(root, excluded, nullptr);
    auto single = Scanner({.threads = oneThread}).scan(root, excluded, nullptr);
    auto result = Scanner({.threads = 4}).scan(root, excluded, nullptr);
    if (!single || !result) {
        ADD_FAILURE() << "no result for " << root;
        return {};
    }
    single->duration = result->duration;
    single->finishedAt = result->finishedAt;
    test::expectSameScan(*single, *result);
    return *result;
}

FileNodePtr child(const FileNodePtr& node, const std::string& name) {
    for (const auto& candidate : node->children) {
        if (candidate->name == name) {
            return candidate;
        }
    }
    return nullptr;
}

// Checks the sums that every finished tree keeps, against the directories' own blocks on disk.
void expectConsistent(const FileNodePtr& node) {
    if (!node->isDirectory) {
        EXPECT_GE(node->size, largeFileThreshold) << node->path();
        EXPECT_EQ(node->fileCount, 1);
        return;
    }
    int64_t size = test::allocatedBytes(node->path()) + node->smallFilesSize;
    int64_t files = node->smallFilesCount;
    for (const auto& c : node->children) {
        expectConsistent(c);
        EXPECT_EQ(c->parent.lock(), node);
        size += c->size;
        files += c->fileCount;
    }
    EXPECT_EQ(node->size, size) << node->path();
    EXPECT_EQ(node->fileCount, files) << node->path();
}

TEST(Scanner, RootThatIsNoFolder) {
    TempDir dir;
    test::writeFile(dir / "file", 100);
    Scanner scanner;
    EXPECT_FALSE(scanner.scan(dir / "file", {}, nullptr));
    EXPECT_FALSE(Scanner().scan(dir / "missing", {}, nullptr));
}

TEST(Scanner, EmptyFolder) {
    TempDir dir;
    const ScanResult scan = scanOrFail(dir.path());
    EXPECT_EQ(scan.root->name, dir.path());
    EXPECT_EQ(scan.rootPath, dir.path());
    EXPECT_TRUE(scan.root->children.empty());
    EXPECT_EQ(scan.totalDirectories, 1);
    EXPECT_EQ(scan.totalFiles, 0);
    EXPECT_EQ(scan.root->size, test::allocatedBytes(dir.path()));
    EXPECT_TRUE(scan.files.empty());
    EXPECT_TRUE(scan.kindTotals.empty());
    EXPECT_EQ(scan.bucketTotals.size(), 1u);
    EXPECT_GT(scan.finishedAt, 1.7e9);
}

TEST(Scanner, SmallFilesAreCountersAndLargeOnesNodes) {
    TempDir dir;
    test::writeFile(dir / "few/a.txt", 10);
    test::writeFile(dir / "few/b.jpg", 5000);
    test::writeFile(dir / "few/c", 100000);
    test::writeFile(dir / "edge/exact.mov", largeFileThreshold);
    test::writeFile(dir / "edge/below.mov", largeFileThreshold - 4096);
    test::writeSparseFile(dir / "edge/sparse.img", 10LL << 30);

    const ScanResult scan = scanOrFail(dir.path());
    const auto few = child(scan.root, "few");
    ASSERT_TRUE(few);
    EXPECT_TRUE(few->children.empty());
    EXPECT_EQ(few->smallFilesCount, 3);
    EXPECT_EQ(few->fileCount, 3);
    EXPECT_EQ(few->logicalSize, 105010);

    const auto edge = child(scan.root, "edge");
    ASSERT_TRUE(edge);
    ASSERT_EQ(test::allocatedBytes(dir / "edge/exact.mov"), largeFileThreshold);
    ASSERT_EQ(edge->children.size(), 1u);
    const auto exact = edge->children[0];
    EXPECT_EQ(exact->name, "exact.mov");
    EXPECT_EQ(exact->kind, FileKind::video);
    EXPECT_EQ(exact->bucket, StorageBucket::video);
    EXPECT_EQ(exact->size, largeFileThreshold);
    EXPECT_EQ(edge->smallFilesCount, 2); // the sparse file has next to no blocks
    EXPECT_EQ(edge->logicalSize, largeFileThreshold * 2 - 4096 + (10LL << 30));
    EXPECT_EQ(scan.files, std::vector<FileNodePtr>{exact});
    EXPECT_EQ(scan.totalFiles, 6);
    EXPECT_EQ(scan.totalDirectories, 3);
    expectConsistent(scan.root);
}

TEST(Scanner, HardLinksCountOnceAtTheFirstPathMet) {
    TempDir dir;
    test::writeFile(dir / "one/a.bin", 1 << 20);
    test::makeHardLink(dir / "one/a.bin", dir / "one/b.bin");
    const ScanResult scan = scanOrFail(dir / "one");
    EXPECT_EQ(scan.hardLinksSkipped, 1);
    EXPECT_EQ(scan.totalFiles, 1);
    EXPECT_EQ(scan.files.size(), 1u);
    EXPECT_EQ(scan.root->size, test::allocatedBytes(dir / "one") + (1 << 20));
}

TEST(Scanner, HardLinkIntoAnExcludedFolderCountsInFull) {
    TempDir dir;
    test::writeFile(dir / "kept/a.bin", 1 << 20);
    test::makeFolder(dir / "gone");
    test::makeHardLink(dir / "kept/a.bin", dir / "gone/a.bin");
    test::makeHardLink(dir / "kept/a.bin", dir / "gone/z.bin");
    const ScanResult scan = scanOrFail(dir.path(), {dir / "gone"});
    EXPECT_EQ(child(scan.root, "gone"), nullptr);
    EXPECT_EQ(scan.hardLinksSkipped, 0);
    EXPECT_EQ(scan.totalFiles, 1);
    EXPECT_EQ(child(scan.root, "kept")->size, test::allocatedBytes(dir / "kept") + (1 << 20));
    EXPECT_EQ(scan.totalDirectories, 2);
}

TEST(Scanner, Exclusions) {
    TempDir dir;
    test::writeFile(dir / "a/b/c/deep.bin", 1 << 20);
    test::writeFile(dir / "a/keep.txt", 10);
    test::writeFile(dir / "a/file-excluded.txt", 10);
    const struct {
        std::set<std::string> excluded;
        int64_t directories;
        int64_t files;
    } cases[] = {
        {{}, 4, 3},
        {{dir / "a/b/c"}, 3, 2},
        {{dir / "a/b"}, 2, 2},
        {{dir / "a/file-excluded.txt"}, 4, 3}, // only folders are tested
        {{dir.path()}, 4, 3},                  // the root never is
        {{dir / "a/b/c/"}, 4, 3},              // compared as exact strings
    };
    for (const auto& [excluded, directories, files] : cases) {
        const ScanResult scan = scanOrFail(dir.path(), excluded);
        const std::string label = excluded.empty() ? "none" : *excluded.begin();
        EXPECT_EQ(scan.totalDirectories, directories) << label;
        EXPECT_EQ(scan.totalFiles, files) << label;
        expectConsistent(scan.root);
    }
}

TEST(Scanner, SymbolicLinksAreSmallFilesOfTheirNamesKind) {
    TempDir dir;
    test::writeFile(dir / "target/huge.mov", 4 << 20);
    test::makeFolder(dir / "links");
    test::makeSymlink(dir / "target/huge.mov", dir / "links/movie.mov");
    test::makeSymlink(dir / "target", dir / "links/folder");
    test::makeSymlink(dir / "nowhere", dir / "links/broken.zip");
    const ScanResult scan = scanOrFail(dir / "links");
    EXPECT_TRUE(scan.root->children.empty()); // never followed
    EXPECT_EQ(scan.totalFiles, 3);
    EXPECT_EQ(scan.totalDirectories, 1);
    EXPECT_EQ(scan.kindCounts.at(FileKind::video), 1);
    EXPECT_EQ(scan.kindCounts.at(FileKind::archive), 1);
    EXPECT_EQ(scan.kindCounts.at(FileKind::other), 1);
    EXPECT_LT(scan.root->size, 1 << 20);
}

TEST(Scanner, TotalsAgreeWithTheTree) {
    TempDir dir;
    test::writeFile(dir / "Library/Caches/com.example/blob", 700000);
    test::writeFile(dir / "project/node_modules/x/index.js", 3000);
    test::writeFile(dir / "project/main.cpp", 2000);
    test::writeFile(dir / "Photos/a.JPG", 900000);
    test::writeFile(dir / "notes.md", 100);
    const ScanResult scan = scanOrFail(dir.path());
    const int64_t bucketSum =
        std::accumulate(scan.bucketTotals.begin(), scan.bucketTotals.end(), int64_t{0},
                        [](int64_t sum, const auto& entry) { return sum + entry.second; });
    EXPECT_EQ(bucketSum, scan.root->size);
    const int64_t kindSum =
        std::accumulate(scan.kindTotals.begin(), scan.kindTotals.end(), int64_t{0},
                        [](int64_t sum, const auto& entry) { return sum + entry.second; });
    EXPECT_EQ(kindSum, scan.root->size - test::allocatedBytes(dir.path()) -
                           test::allocatedBytes(dir / "Library") -
                           test::allocatedBytes(dir / "Library/Caches") -
                           test::allocatedBytes(dir / "Library/Caches/com.example") -
                           test::allocatedBytes(dir / "project") -
                           test::allocatedBytes(dir / "project/node_modules") -
                           test::allocatedBytes(dir / "project/node_modules/x") -
                           test::allocatedBytes(dir / "Photos"));
    EXPECT_EQ(scan.bucketTotals.at(StorageBucket::developer),
              test::allocatedBytes(dir / "project/node_modules") +
                  test::allocatedBytes(dir / "project/node_modules/x") +
                  test::allocatedBytes(dir / "project/node_modules/x/index.js"));
    EXPECT_EQ(child(scan.root, "Photos")->children.at(0)->bucket, StorageBucket::images);
    EXPECT_EQ(scan.kindCounts.at(FileKind::code), 2);
    expectConsistent(scan.root);
}

struct UnreadableOutcome {
    int64_t unreadable = -1;
    int64_t directories = -1;
    bool flagged = false;
    size_t children = 99;
    int64_t size = -1;
};

UnreadableOutcome scanWithoutPrivileges(const std::string& root, const std::string& lockedName) {
    return test::runUnprivileged<UnreadableOutcome>([&] {
               UnreadableOutcome outcome;
               const ScanResult scan = scanOrFail(root);
               outcome.unreadable = scan.unreadableDirectories;
               outcome.directories = scan.totalDirectories;
               if (const auto locked = child(scan.root, lockedName)) {
                   outcome.flagged = locked->unreadable;
                   outcome.children = locked->children.size();
                   outcome.size = locked->size;
               }
               return outcome;
           })
        .value_or(UnreadableOutcome{});
}

// A Linux home built in a temporary folder, scanned as the user's own: each place in it has the
// category a Linux desktop gives it, and the files of unlabelled places go by their kind.
TEST(Scanner, ALinuxHomeOfTheTestsOwn) {
    TempDir dir;
    const std::string home = dir / "home";
    const test::ScopedEnvironment homeVariable("HOME", home);
    const struct {
        std::string folder;
        StorageBucket bucket;
    } cases[] = {
        {".cache/pip/http", StorageBucket::junk},
        {".local/share/Trash/files/old", StorageBucket::trash},
        {".local/share/fonts", StorageBucket::appData},
        {".config/app", StorageBucket::appData},
        {".var/app/org.example.App/data", StorageBucket::appData},
        {"snap/firefox/common", StorageBucket::applications},
        {"projects/site/node_modules", StorageBucket::developer},
        {".config/go", StorageBucket::developer},
    };
    for (const auto& [folder, bucket] : cases) {
        test::writeFile(home + "/" + folder + "/blob.bin", 600000);
    }
    test::writeFile(home + "/Documents/report.pdf", 600000);

    const ScanResult scan = scanOrFail(home);
    const auto nodeAt = [&](const std::string& relative) {
        FileNodePtr node = scan.root;
        size_t start = 0;
        while (node != nullptr && start < relative.size()) {
            const size_t end = std::min(relative.find('/', start), relative.size());
            node = child(node, relative.substr(start, end - start));
            start = end + 1;
        }
        return node;
    };
    for (const auto& [folder, bucket] : cases) {
        const FileNodePtr node = nodeAt(folder + "/blob.bin");
        ASSERT_NE(node, nullptr) << folder;
        EXPECT_EQ(info(node->bucket).caseName, info(bucket).caseName) << folder;
    }
    EXPECT_EQ(nodeAt("Documents")->bucket, StorageBucket::other);
    EXPECT_EQ(nodeAt("Documents/report.pdf")->bucket, StorageBucket::documents);
    EXPECT_EQ(scan.root->bucket, StorageBucket::other);
}

TEST(Scanner, UnreadableFolderKeepsItsOwnBlocksAndNoContent) {
    TempDir dir;
    chmod(dir.path().c_str(), 0755);
    test::writeFile(dir / "open/a.txt", 100);
    test::writeFile(dir / "locked/inside/secret.bin", 2 << 20);
    const int64_t ownBlocks = test::allocatedBytes(dir / "locked");
    chmod((dir / "locked").c_str(), 0000);

    const UnreadableOutcome outcome = scanWithoutPrivileges(dir.path(), "locked");
    EXPECT_EQ(outcome.unreadable, 1);
    EXPECT_EQ(outcome.directories, 3);
    EXPECT_TRUE(outcome.flagged);
    EXPECT_EQ(outcome.children, 0u);
    EXPECT_EQ(outcome.size, ownBlocks);
}

TEST(Scanner, ProgressReportsCanonicalPathsEveryThousandFiles) {
    TempDir dir;
    for (int i = 0; i < 2100; ++i) {
        test::writeFile(dir / ("many/f" + std::to_string(i)), 0);
    }
    std::vector<std::pair<int64_t, std::string>> reported;
    Scanner scanner({.threads = oneThread, .progressInterval = 0});
    const auto scan =
        scanner.scan(dir.path(), {}, [&](int64_t files, int64_t, const std::string& path) {
            reported.emplace_back(files, path);
        });
    ASSERT_TRUE(scan);
    // While only folders pass the count stands at 0 and each is reported; then every 1024 files.
    ASSERT_EQ(reported.size(), 4u);
    EXPECT_EQ(reported[0].first, 0);
    EXPECT_EQ(reported[0].second, dir.path());
    EXPECT_EQ(reported[1].first, 0);
    EXPECT_EQ(reported[1].second, dir / "many");
    EXPECT_EQ(reported[2].first, 1024);
    EXPECT_EQ(reported[3].first, 2048);
    EXPECT_TRUE(reported[3].second.starts_with(dir / "many/f")) << reported[3].second;
}

TEST(Scanner, CancellationTakesEffectAtTheNextFolder) {
    TempDir dir;
    for (int i = 0; i < 2100; ++i) {
        test::writeFile(dir / ("a/f" + std::to_string(i)), 0);
    }
    for (int i = 0; i < 2100; ++i) {
        test::writeFile(dir / ("b/f" + std::to_string(i)), 0);
    }
    Scanner scanner({.threads = oneThread, .progressInterval = 0});
    std::vector<int64_t> reported;
    const auto scan = scanner.scan(dir.path(), {}, [&](int64_t files, int64_t, const std::string&) {
        reported.push_back(files);
        if (files == 1024) {
            scanner.cancel();
        }
    });
    EXPECT_FALSE(scan);
    EXPECT_TRUE(scanner.isCancelled());
    // The walk finished the folder it was in (2048 lies there) and stopped before the next.
    EXPECT_EQ(reported.back(), 2048);

    Scanner early;
    early.cancel();
    early.cancel();
    EXPECT_FALSE(early.scan(dir.path(), {}, nullptr));
}

TEST(Scanner, MeasureFolder) {
    TempDir dir;
    test::writeFile(dir / "m/a.bin", 1 << 20);
    test::makeHardLink(dir / "m/a.bin", dir / "m/b.bin");
    test::writeFile(dir / "m/sub/c.txt", 10);
    test::makeSymlink(dir / "m/a.bin", dir / "m/link");
    test::makeSymlink(dir / "gone", dir / "m/broken");
    const FolderMeasure measure = measureFolder(dir / "m");
    // a.bin once, c.txt and both links: a physical walk reports a dangling link as a link.
    EXPECT_EQ(measure.fileCount, 4);
    EXPECT_EQ(measure.bytes, test::allocatedBytes(dir / "m") + test::allocatedBytes(dir / "m/sub") +
                                 (1 << 20) + test::allocatedBytes(dir / "m/sub/c.txt") +
                                 test::allocatedBytes(dir / "m/link") +
                                 test::allocatedBytes(dir / "m/broken"));
    const FolderMeasure single = measureFolder(dir / "m/a.bin");
    EXPECT_EQ(single.bytes, 1 << 20);
    EXPECT_EQ(single.fileCount, 1);
    const FolderMeasure missing = measureFolder(dir / "missing");
    EXPECT_EQ(missing.bytes, 0);
    EXPECT_EQ(missing.fileCount, 0);
}

} // namespace
} // namespace dorvik
