#include "SameScan.h"
#include "scanning/MarkRemoved.h"
#include "scanning/ScanArchive.h"
#include "scanning/Scanner.h"
#include "support/HostileArchives.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace dorvik {
namespace {

using Bytes = std::vector<uint8_t>;

// The expected bytes, built by hand in the test rather than by the writer.
struct Expected {
    Bytes bytes;
    void u8(uint8_t v) { bytes.push_back(v); }
    void u32(uint32_t v) {
        for (int i = 0; i < 4; ++i) {
            bytes.push_back(static_cast<uint8_t>(v >> (8 * i)));
        }
    }
    void i64(int64_t v) {
        for (int i = 0; i < 8; ++i) {
            bytes.push_back(static_cast<uint8_t>(static_cast<uint64_t>(v) >> (8 * i)));
        }
    }
    void f64(double v) { i64(std::bit_cast<int64_t>(v)); }
    void text(const std::string& s) {
        u32(static_cast<uint32_t>(s.size()));
        bytes.insert(bytes.end(), s.begin(), s.end());
    }
};

ScanResult smallScan() {
    auto root =
        std::make_shared<FileNode>("/r", true, false, FileKind::other, StorageBucket::other);
    root->size = 9000;
    root->logicalSize = 7000;
    root->fileCount = 2;
    root->modified = 100;
    root->accessed = 200;
    root->smallFilesSize = 4096;
    root->smallFilesCount = 1;
    auto big =
        std::make_shared<FileNode>("big.mov", false, false, FileKind::video, StorageBucket::video);
    big->size = 600000;
    big->fileCount = 1;
    FileNode::adopt(root, big);
    auto app = std::make_shared<FileNode>("A.app", true, true, FileKind::application,
                                          StorageBucket::applications);
    app->unreadable = true;
    FileNode::adopt(root, app);
    ScanResult scan;
    scan.root = root;
    scan.rootPath = "/r";
    scan.files = {big};
    scan.bucketTotals = {{StorageBucket::video, 600000}};
    scan.kindCounts = {{FileKind::video, 1}};
    scan.totalFiles = 2;
    scan.totalDirectories = 2;
    scan.unreadableDirectories = 1;
    scan.hardLinksSkipped = 3;
    scan.duration = 1.5;
    scan.finishedAt = 1700000000.25;
    return scan;
}

TEST(ScanArchive, ByteLayoutOfASmallTree) {
    const ScanResult scan = smallScan();
    Expected e;
    e.bytes = {0x31, 0x53, 0x56, 0x44, 1, 2}; // magic, version, folder target
    e.text("/some/target");
    e.text("/r");
    e.u32(1); // bucket totals
    e.u8(3);
    e.i64(600000);
    e.u32(0); // kind totals
    e.u32(1); // kind counts
    e.u8(2);
    e.i64(1);
    e.i64(2);
    e.i64(2);
    e.i64(1);
    e.i64(3);
    e.f64(1.5);
    e.f64(1700000000.25);
    auto node = [&](const std::string& name, uint8_t flags, uint8_t kind, uint8_t bucket,
                    int64_t size, int64_t logical, int64_t files, double modified, double accessed,
                    int64_t smallSize, int64_t smallCount, uint32_t children) {
        e.text(name);
        e.u8(flags);
        e.u8(kind);
        e.u8(bucket);
        e.i64(size);
        e.i64(logical);
        e.i64(files);
        e.f64(modified);
        e.f64(accessed);
        e.i64(smallSize);
        e.i64(smallCount);
        e.u32(children);
    };
    node("/r", 1, 8, 11, 9000, 7000, 2, 100, 200, 4096, 1, 2);
    node("big.mov", 0, 2, 3, 600000, 0, 1, 0, 0, 0, 0, 0);
    node("A.app", 1 | 2 | 4, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(ScanArchive::encodePayload(scan, ScanTarget::folder("/some/target")), e.bytes);
}

TEST(ScanArchive, RoundTripOfARealScanThroughTheFile) {
    test::TempDir dir;
    test::writeFile(dir / "tree/Movies/a.mov", 3 << 20);
    test::writeFile(dir / "tree/Movies/b.mov", 1 << 20);
    test::writeFile(dir / "tree/Code/x.cpp", 100);
    test::writeFile(dir / "tree/Code/Tool.app/Contents/bin", 700000);
    test::writeFile(dir / "tree/caf\xc3\xa9 \xff/odd name.zip", 600000); // not UTF-8
    Scanner scanner;
    const auto scan = scanner.scan(dir / "tree", {}, nullptr);
    ASSERT_TRUE(scan);
    const std::string path = dir / "state/last-scan.dvscan";
    const struct {
        ScanTarget target;
    } targets[] = {
        {ScanTarget::folder(dir / "tree/")}, {ScanTarget::home()}, {ScanTarget::wholeDisk()}};
    for (const auto& [target] : targets) {
        ASSERT_TRUE(ScanArchive::write(*scan, target, path));
        const auto archived = ScanArchive::read(path);
        ASSERT_TRUE(archived);
        EXPECT_EQ(archived->target, target);
        test::expectSameScan(*scan, archived->scan);
        // Files come back in stream order, which is depth-first.
        std::vector<std::string> files;
        for (const auto& file : archived->scan.files) {
            files.push_back(file->path());
        }
        std::vector<std::string> original;
        std::function<void(const FileNode&)> collect = [&](const FileNode& node) {
            if (!node.isDirectory) {
                original.push_back(node.path());
            }
            for (const auto& c : node.children) {
                collect(*c);
            }
        };
        collect(*scan->root);
        EXPECT_EQ(files, original);
        EXPECT_EQ(files.size(), 4u);
    }
}

TEST(ScanArchive, RemovedNodesAreLeftOut) {
    ScanResult scan = smallScan();
    markRemoved(scan, {"/r/big.mov"});
    const auto archived =
        ScanArchive::decodePayload(ScanArchive::encodePayload(scan, ScanTarget::home()));
    ASSERT_TRUE(archived);
    ASSERT_EQ(archived->scan.root->children.size(), 1u);
    EXPECT_EQ(archived->scan.root->children[0]->name, "A.app");
    EXPECT_TRUE(archived->scan.files.empty());
    EXPECT_EQ(archived->scan.root->size, 9000 - 600000);
}

TEST(ScanArchive, EveryCutBeforeTheLastRecordIsNoArchive) {
    const Bytes payload = ScanArchive::encodePayload(smallScan(), ScanTarget::wholeDisk());
    for (size_t length = 0; length < payload.size(); ++length) {
        EXPECT_FALSE(ScanArchive::decodePayload(std::span(payload.data(), length)))
            << "cut at " << length;
    }
    Bytes extended = payload;
    extended.insert(extended.end(), {1, 2, 3});
    EXPECT_TRUE(ScanArchive::decodePayload(extended));
}

TEST(ScanArchive, DamagedPayloads) {
    const Bytes good = ScanArchive::encodePayload(smallScan(), ScanTarget::wholeDisk());
    // Offsets in a whole-disk payload of the small scan.
    const size_t versionAt = 4, tagAt = 5, bucketTableAt = 6 + 4 + 6;
    const size_t firstNodeAt = bucketTableAt + 13 + 4 + 13 + 48;
    const size_t rootKindAt = firstNodeAt + 4 + 2 + 1, rootBucketAt = rootKindAt + 1;
    const size_t childKindAt = firstNodeAt + 6 + 63 + 4 + 7 + 1;

    auto with = [&](size_t at, uint8_t value) {
        Bytes bytes = good;
        bytes.at(at) = value;
        return ScanArchive::decodePayload(bytes);
    };
    EXPECT_FALSE(with(0, 0x32));              // magic
    EXPECT_FALSE(with(versionAt, 2));         // no other version is read
    EXPECT_FALSE(with(tagAt, 3));             // unknown target
    EXPECT_FALSE(with(bucketTableAt + 1, 4)); // 1025 bucket entries

    const auto unknownKinds = with(rootKindAt, 200);
    ASSERT_TRUE(unknownKinds);
    EXPECT_EQ(unknownKinds->scan.root->kind, FileKind::other);
    const auto unknownBucket = with(rootBucketAt, 12);
    ASSERT_TRUE(unknownBucket);
    EXPECT_EQ(unknownBucket->scan.root->bucket, StorageBucket::other);
    const auto unknownChildKind = with(childKindAt, 9);
    ASSERT_TRUE(unknownChildKind);
    EXPECT_EQ(unknownChildKind->scan.files.at(0)->kind, FileKind::other);
    // A table key that is no case drops the entry.
    const auto unknownKey = with(bucketTableAt + 4, 12);
    ASSERT_TRUE(unknownKey);
    EXPECT_TRUE(unknownKey->scan.bucketTotals.empty());
}

TEST(ScanArchive, TableCounts) {
    const auto withBucketEntries = [](uint32_t count) {
        ScanResult scan = smallScan();
        Bytes payload = ScanArchive::encodePayload(scan, ScanTarget::wholeDisk());
        const size_t tableAt = 6 + 4 + 6;
        Bytes table;
        for (int i = 0; i < 4; ++i) {
            table.push_back(static_cast<uint8_t>(count >> (8 * i)));
        }
        for (uint32_t i = 0; i < count; ++i) {
            table.push_back(static_cast<uint8_t>(i % 12));
            for (int b = 0; b < 8; ++b) {
                table.push_back(b == 0 ? 1 : 0);
            }
        }
        payload.erase(payload.begin() + tableAt, payload.begin() + tableAt + 13);
        payload.insert(payload.begin() + tableAt, table.begin(), table.end());
        return ScanArchive::decodePayload(payload);
    };
    const auto most = withBucketEntries(999);
    ASSERT_TRUE(most);
    EXPECT_EQ(most->scan.bucketTotals.size(), 12u);
    EXPECT_FALSE(withBucketEntries(1000));
}

size_t levelsBelow(const FileNode& root) {
    size_t levels = 0;
    for (const FileNode* at = &root; !at->children.empty(); at = at->children[0].get()) {
        ++levels;
    }
    return levels;
}

// No disk holds a tree deeper than the limit: such an archive is none, and reading it neither
// overflows the stack nor builds what it describes.
TEST(ScanArchive, TreesDeeperThanTheLimitAreNoArchive) {
    const size_t deepest = ScanArchive::Limits{}.deepestLevel;
    const struct {
        size_t levels;
        bool reads;
    } cases[] = {{deepest, true}, {deepest + 1, false}, {150'000, false}};
    for (const auto& [levels, reads] : cases) {
        const auto archived = ScanArchive::decodePayload(test::chainPayload(levels));
        ASSERT_EQ(archived.has_value(), reads) << levels;
        if (archived) {
            EXPECT_EQ(levelsBelow(*archived->scan.root), levels);
        }
    }
}

// The node count and the payload are held to what a disk can hold, before the memory is taken.
TEST(ScanArchive, NodeCountAndPayloadLimits) {
    ScanArchive::Limits small;
    small.mostNodes = 100;
    EXPECT_TRUE(ScanArchive::decodePayload(test::widePayload(99), small));
    EXPECT_FALSE(ScanArchive::decodePayload(test::widePayload(100), small));

    const Bytes payload = test::widePayload(10);
    small.largestPayload = payload.size();
    EXPECT_TRUE(ScanArchive::decodeArchive(test::compressed(payload), small));
    small.largestPayload = payload.size() - 1;
    EXPECT_FALSE(ScanArchive::decodeArchive(test::compressed(payload), small));

    // Small files that unfold into more than any disk holds.
    const struct {
        std::string what;
        Bytes file;
    } hostile[] = {
        {"20 million folders", test::wideArchive(20'000'000)},
        {"1 GiB of zeros", test::zerosArchive(size_t{1} << 30)},
    };
    for (const auto& [what, file] : hostile) {
        EXPECT_LT(file.size(), 1u << 20) << what;
        EXPECT_FALSE(ScanArchive::decodeArchive(file)) << what;
    }
}

TEST(ScanArchive, FilesThatAreNoArchive) {
    test::TempDir dir;
    const std::string path = dir / "x.dvscan";
    EXPECT_FALSE(ScanArchive::read(path)); // missing
    std::ofstream(path) << "not compressed at all";
    EXPECT_FALSE(ScanArchive::read(path));
    ASSERT_TRUE(ScanArchive::write(smallScan(), ScanTarget::home(), path));
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - 10);
    EXPECT_FALSE(ScanArchive::read(path));
}

// A FIFO in the archive's place has no writer: opening it for reading must not wait for one.
TEST(ScanArchive, AFifoIsNoArchiveAndDoesNotHang) {
    test::TempDir dir;
    const std::string path = dir / "last-scan.dvscan";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::promise<bool> readBack;
    std::future<bool> done = readBack.get_future();
    std::thread reader([&] { readBack.set_value(ScanArchive::read(path).has_value()); });
    if (done.wait_for(std::chrono::seconds(10)) != std::future_status::ready) {
        // Give the stuck reader a writer, so that the test can end.
        close(open(path.c_str(), O_WRONLY | O_NONBLOCK));
        reader.join();
        FAIL() << "reading a FIFO waited for a writer";
    }
    reader.join();
    EXPECT_FALSE(done.get());
}

TEST(ScanArchive, DefaultPathFollowsXdgDataHome) {
    test::TempDir dir;
    const char* saved = std::getenv("XDG_DATA_HOME");
    const std::string previous = saved != nullptr ? saved : "";
    setenv("XDG_DATA_HOME", dir.path().c_str(), 1);
    EXPECT_EQ(ScanArchive::defaultPath(), dir / "Dorvik/last-scan.dvscan");
    EXPECT_TRUE(std::filesystem::is_directory(dir / "Dorvik"));
    if (saved != nullptr) {
        setenv("XDG_DATA_HOME", previous.c_str(), 1);
    } else {
        unsetenv("XDG_DATA_HOME");
    }
}

} // namespace
} // namespace dorvik
