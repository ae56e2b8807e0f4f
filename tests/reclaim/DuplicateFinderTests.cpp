#include "reclaim/ContentHash.h"
#include "reclaim/DuplicateFinder.h"
#include "support/SampleFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <map>
#include <sys/inotify.h>
#include <unistd.h>

namespace dorvik {
namespace {

using test::TempDir;

using test::mebibyte;
using test::scanOf;
using test::writeContent;

// The names, relative to `root`, of each group's files in their order.
std::vector<std::vector<std::string>> namesOf(const std::vector<DuplicateGroup>& groups,
                                              const std::string& root) {
    std::vector<std::vector<std::string>> names;
    for (const DuplicateGroup& group : groups) {
        names.emplace_back();
        for (const FileNodePtr& file : group.files) {
            names.back().push_back(file->path().substr(root.size() + 1));
        }
    }
    return names;
}

std::vector<DuplicateGroup> search(const ScanResult& scan, int threads = 1) {
    return findDuplicates(
        scan.files, duplicateMinSize, [](double) {}, threads);
}

// Counts the times the files were opened, by anyone, through inotify.
class OpenCounter {
public:
    OpenCounter() : fd_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~OpenCounter() { close(fd_); }
    void watch(const std::string& path) {
        const int id = inotify_add_watch(fd_, path.c_str(), IN_OPEN | IN_ACCESS);
        ASSERT_GE(id, 0) << path;
        names_[id] = path;
    }
    // The paths opened since the last call, each once.
    std::set<std::string> opened() {
        std::set<std::string> paths;
        alignas(inotify_event) char buffer[4096];
        for (;;) {
            const ssize_t got = read(fd_, buffer, sizeof buffer);
            if (got <= 0) {
                return paths;
            }
            for (ssize_t at = 0; at < got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                paths.insert(names_[event->wd]);
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
    }

private:
    int fd_;
    std::map<int, std::string> names_;
};

TEST(DuplicateFinder, OnlyFilesOfTheLeastSizeAndUpAreCandidatesAndSmallerOnesAreNeverOpened) {
    TempDir dir;
    writeContent(dir / "exact/a.bin", mebibyte, 1);
    writeContent(dir / "exact/b.bin", mebibyte, 1);
    writeContent(dir / "under/a.bin", mebibyte - 1, 2);
    writeContent(dir / "under/b.bin", mebibyte - 1, 2);
    const ScanResult scan = scanOf(dir.path());
    ASSERT_EQ(scan.files.size(), 4u); // all four have nodes: the scan does not decide this

    OpenCounter opens;
    for (const char* name : {"exact/a.bin", "exact/b.bin", "under/a.bin", "under/b.bin"}) {
        opens.watch(dir / name);
    }
    opens.opened();
    const auto groups = search(scan);

    EXPECT_EQ(namesOf(groups, dir.path()),
              (std::vector<std::vector<std::string>>{{"exact/a.bin", "exact/b.bin"}}));
    EXPECT_EQ(opens.opened(), (std::set<std::string>{dir / "exact/a.bin", dir / "exact/b.bin"}));
}

TEST(DuplicateFinder, NothingInsideABundleOrAPhotoLibraryIsOffered) {
    TempDir dir;
    const std::vector<std::string> hidden = {
        "Applications/X.app/Contents/a.bin", "Applications/X.app/Contents/b.bin",
        "Pictures/Old.photoslibrary/originals/a.bin", "Pictures/Old.photoslibrary/b.bin"};
    for (const std::string& name : hidden) {
        writeContent(dir / name, 2 * mebibyte, 3);
    }
    // Names that only end in the markers, with nothing below them, are ordinary files.
    writeContent(dir / "exports/Y.app", 2 * mebibyte, 4);
    writeContent(dir / "exports/Z.photoslibrary", 2 * mebibyte, 4);
    const ScanResult scan = scanOf(dir.path());

    EXPECT_EQ(
        namesOf(search(scan), dir.path()),
        (std::vector<std::vector<std::string>>{{"exports/Y.app", "exports/Z.photoslibrary"}}));
}

TEST(DuplicateFinder, OnlyEqualContentFormsAGroup) {
    TempDir dir;
    const int64_t length = 3 * mebibyte + 17;
    writeContent(dir / "a/original", length, 5);
    writeContent(dir / "b/copy", length, 5);
    writeContent(dir / "c/headDiffers", length, 5, ContentHash::headBytes - 1);
    writeContent(dir / "d/lastByteDiffers", length, 5, length - 1);
    writeContent(dir / "e/justPastHead", length, 5, ContentHash::headBytes);
    writeContent(dir / "f/longer", length + 1, 5);
    writeContent(dir / "g/copyOfJustPastHead", length, 5, ContentHash::headBytes);
    const ScanResult scan = scanOf(dir.path());

    const auto groups = search(scan);
    auto names = namesOf(groups, dir.path());
    for (auto& group : names) {
        std::sort(group.begin(), group.end()); // equal dates: in the order the scan met them
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::vector<std::string>>{
                         {"a/original", "b/copy"}, {"e/justPastHead", "g/copyOfJustPastHead"}}));
    for (const DuplicateGroup& group : groups) {
        const std::string sum = test::commandOutput("sha256sum '" + group.files[0]->path() + "'");
        EXPECT_EQ(group.id, sum.substr(0, 64));
    }
}

TEST(DuplicateFinder, GroupsAreOrderedOldestFirstAndByRecoverableBytes) {
    TempDir dir;
    // Three copies of a small file recover more than two copies of a larger one.
    writeContent(dir / "s/1", 2 * mebibyte, 6);
    writeContent(dir / "s/2", 2 * mebibyte, 6);
    writeContent(dir / "s/3", 2 * mebibyte, 6);
    writeContent(dir / "t/1", 3 * mebibyte, 7);
    writeContent(dir / "t/2", 3 * mebibyte, 7);
    test::setModificationTime(dir / "s/1", 3000);
    test::setModificationTime(dir / "s/2", 2000);
    test::setModificationTime(dir / "s/3", 3000);
    test::setModificationTime(dir / "t/1", 5000);
    test::setModificationTime(dir / "t/2", 5000);
    const ScanResult scan = scanOf(dir.path());
    ASSERT_EQ(scan.files.size(), 5u);

    // Equal dates keep the order of the scan, which is the directory's and not the names'.
    const auto metFirst = [&](const std::string& one, const std::string& other) {
        for (const FileNodePtr& file : scan.files) {
            if (file->path() == dir / one || file->path() == dir / other) {
                return file->path() == dir / one ? std::pair{one, other} : std::pair{other, one};
            }
        }
        return std::pair{one, other};
    };
    const auto [s1, s3] = metFirst("s/1", "s/3");
    const auto [t1, t2] = metFirst("t/1", "t/2");

    const auto groups = search(scan);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(namesOf(groups, dir.path()),
              (std::vector<std::vector<std::string>>{{"s/2", s1, s3}, {t1, t2}}));
    EXPECT_EQ(groups[0].size, test::allocatedBytes(dir / "s/1"));
    EXPECT_EQ(groups[0].recoverableBytes(), 2 * groups[0].size);
    EXPECT_EQ(groups[1].recoverableBytes(), groups[1].size);
}

TEST(DuplicateFinder, RemovedAndUnreadableFilesDropOut) {
    TempDir dir;
    for (const char* name : {"a", "b", "c", "d"}) {
        writeContent(dir / name, 2 * mebibyte, 8);
    }
    const ScanResult scan = scanOf(dir.path());
    ASSERT_EQ(scan.files.size(), 4u);
    for (const FileNodePtr& file : scan.files) {
        if (file->name == "a") {
            file->deleted = true;
        }
    }
    ::unlink((dir / "b").c_str()); // gone since the scan: cannot be opened

    EXPECT_EQ(namesOf(search(scan), dir.path()),
              (std::vector<std::vector<std::string>>{{"c", "d"}}));
}

TEST(DuplicateFinder, ProgressComesInOrderEveryTwentySizeGroupsAndTheResultIgnoresThreads) {
    TempDir dir;
    constexpr int sizeGroups = 45;
    for (int index = 0; index < sizeGroups; ++index) {
        const int64_t length = mebibyte + index;
        writeContent(dir / ("x" + std::to_string(index)), length, index);
        writeContent(dir / ("y" + std::to_string(index)), length, index);
    }
    const ScanResult scan = scanOf(dir.path());

    for (const int threads : {1, 2, 4}) {
        std::vector<double> reports;
        const auto groups = findDuplicates(
            scan.files, duplicateMinSize, [&](double value) { reports.push_back(value); }, threads);
        EXPECT_EQ(reports, (std::vector<double>{20.0 / sizeGroups, 40.0 / sizeGroups, 1.0}))
            << threads << " threads";
        ASSERT_EQ(groups.size(), static_cast<size_t>(sizeGroups));
        EXPECT_EQ(namesOf(groups, dir.path()), namesOf(search(scan), dir.path()));
    }
}

TEST(DuplicateFinder, ASearchOverNothingReportsOnlyTheEnd) {
    std::vector<double> reports;
    const auto groups =
        findDuplicates({}, duplicateMinSize, [&](double value) { reports.push_back(value); });
    EXPECT_TRUE(groups.empty());
    EXPECT_EQ(reports, std::vector<double>{1.0});
}

TEST(DuplicateGroup, PracticallySharedAtTheExactThresholds) {
    struct Case {
        int64_t privateBytes;
        int64_t allocated;
        bool shared;
    };
    for (const Case& c :
         {Case{4095, 8192, true}, Case{4096, 8192, false}, Case{4095, 40960, true},
          Case{4096, 40960, false}, Case{4095, 40959, true}, Case{4096, 40959, false},
          Case{104856, 1048576, true}, Case{104857, 1048576, false}, Case{0, 0, true}}) {
        EXPECT_EQ(isPracticallyShared(c.privateBytes, c.allocated), c.shared)
            << c.privateBytes << " of " << c.allocated;
    }
}

TEST(DuplicateGroup, AllSharedFilesCountAsOneStoredCopy) {
    std::vector<FileNodePtr> nodes;
    for (int index = 0; index < 4; ++index) {
        nodes.push_back(std::make_shared<FileNode>("f" + std::to_string(index), false, false,
                                                   FileKind{}, StorageBucket{}));
    }
    struct Case {
        size_t files;
        std::vector<int> shared;
        int64_t recoverableCopies;
    };
    for (const Case& c : {Case{2, {}, 1}, Case{3, {}, 2}, Case{3, {0, 1}, 1}, Case{3, {0}, 2},
                          Case{2, {0, 1}, 0}, Case{4, {1, 2, 3}, 1}}) {
        DuplicateGroup group;
        group.size = 1000;
        group.files = {nodes.begin(), nodes.begin() + static_cast<long>(c.files)};
        for (const int index : c.shared) {
            group.shared.insert(nodes[static_cast<size_t>(index)].get());
        }
        EXPECT_EQ(group.recoverableBytes(), 1000 * c.recoverableCopies)
            << c.files << " files, " << c.shared.size() << " shared";
    }
}

} // namespace
} // namespace dorvik
