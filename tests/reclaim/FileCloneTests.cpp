#include "base/Uuid.h"
#include "platform/Reflink.h"
#include "reclaim/DuplicateFinder.h"
#include "reclaim/FileClone.h"
#include "support/ReflinkMount.h"
#include "support/SampleFiles.h"
#include "support/ScratchMount.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace dorvik {
namespace {

using test::mebibyte;
using test::TempDir;
using test::writeContent;

// A reflink-capable filesystem for the test, or a skip that says why there is none.
#define REQUIRE_REFLINKS(mount)                                                                    \
    if (!(mount).mounted()) {                                                                      \
        GTEST_SKIP() << (mount).whyNot();                                                          \
    }

std::string attribute(const std::string& path, const std::string& name) {
    char value[256];
    const ssize_t got = lgetxattr(path.c_str(), name.c_str(), value, sizeof value);
    return got < 0 ? "<none>" : std::string(value, static_cast<size_t>(got));
}

void setAttribute(const std::string& path, const std::string& name, const std::string& value) {
    ASSERT_EQ(lsetxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0), 0)
        << name << ": " << std::strerror(errno);
}

// An access control list granting user `uid` read access beside the owner's `rw-`, `r--` for
// the group and nothing for others: the kernel's binary form of system.posix_acl_access.
std::string aclGranting(uint32_t uid) {
    struct Entry {
        uint16_t tag;
        uint16_t permissions;
        uint32_t id;
    };
    const uint32_t undefined = 0xffffffffu;
    const Entry entries[] = {{0x01, 6, undefined},
                             {0x02, 4, uid},
                             {0x04, 4, undefined},
                             {0x10, 4, undefined},
                             {0x20, 0, undefined}};
    std::string bytes = std::string("\x02\x00\x00\x00", 4);
    bytes.append(reinterpret_cast<const char*>(entries), sizeof entries);
    return bytes;
}

int64_t freeBytes(const std::string& folder) {
    sync();
    struct statvfs figures {};
    EXPECT_EQ(statvfs(folder.c_str(), &figures), 0);
    return static_cast<int64_t>(figures.f_bavail) * static_cast<int64_t>(figures.f_frsize);
}

// Whatever ".dorvik-clone-" files stand in the folder.
std::vector<std::string> temporaryClones(const std::string& folder) {
    std::vector<std::string> found;
    const std::string listing = test::commandOutput("ls -A '" + folder + "'");
    size_t start = 0;
    while (start < listing.size()) {
        const size_t end = listing.find('\n', start);
        const std::string name = listing.substr(start, end - start);
        if (name.starts_with(FileClone::temporaryPrefix)) {
            found.push_back(name);
        }
        start = end == std::string::npos ? listing.size() : end + 1;
    }
    return found;
}

TEST(FileClone, ASharedCopyKeepsItsOwnMetadataAndGivesItsBlocksBack) {
    TempDir dir;
    test::ReflinkMount xfs(dir.path());
    REQUIRE_REFLINKS(xfs);
    const std::string original = xfs.path() + "/original.bin";
    const std::string copy = xfs.path() + "/copy.bin";
    writeContent(original, 8 * mebibyte, 1);
    writeContent(copy, 8 * mebibyte, 1);
    setAttribute(original, "user.origin", "original's");
    setAttribute(copy, "user.kept", "copy's");
    setAttribute(copy, "system.posix_acl_access", aclGranting(4321));
    ASSERT_EQ(chmod(copy.c_str(), 0640), 0);
    ASSERT_EQ(chown(copy.c_str(), 1234, 5678), 0);
    test::setModificationTime(original, 1'000'000'000);
    test::setModificationTime(copy, 1'200'000'000.5);
    struct stat before {};
    ASSERT_EQ(lstat(copy.c_str(), &before), 0);
    const std::string acl = attribute(copy, "system.posix_acl_access");
    const int64_t freeBefore = freeBytes(xfs.path());

    const FileClone::CloneReport report = FileClone::share({{copy, original}});

    EXPECT_EQ(report.converted, std::vector<std::string>{copy});
    EXPECT_TRUE(report.failures.empty());
    EXPECT_EQ(report.reclaimed, 8 * mebibyte);
    EXPECT_EQ(test::readText(copy), test::readText(original));
    struct stat after {};
    ASSERT_EQ(lstat(copy.c_str(), &after), 0);
    EXPECT_NE(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, 1234u);
    EXPECT_EQ(after.st_gid, 5678u);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(attribute(copy, "user.kept"), "copy's");
    EXPECT_EQ(attribute(copy, "system.posix_acl_access"), acl);
    EXPECT_EQ(attribute(copy, "user.origin"), "<none>");
    EXPECT_EQ(attribute(original, "user.origin"), "original's");
    EXPECT_LT(platform::privateSize(copy).value_or(-1), 4096);
    EXPECT_GE(freeBytes(xfs.path()) - freeBefore, 8 * mebibyte);
    EXPECT_TRUE(temporaryClones(xfs.path()).empty());

    // Asked again, nothing is left to win.
    const FileClone::CloneReport again = FileClone::share({{copy, original}});
    EXPECT_EQ(again.alreadyShared, 1);
    EXPECT_EQ(again.reclaimed, 0);
    EXPECT_TRUE(again.converted.empty());
    EXPECT_TRUE(again.failures.empty());

    // Later edits of one leave the other as it was.
    writeContent(copy, 8 * mebibyte, 2);
    EXPECT_NE(test::readText(copy), test::readText(original));
}

TEST(FileClone, CopiesThatCannotBeReplacedStayAsTheyWere) {
    TempDir dir;
    test::ReflinkMount xfs(dir.path());
    REQUIRE_REFLINKS(xfs);
    const std::string root = xfs.path();
    writeContent(root + "/original", 2 * mebibyte, 3);
    writeContent(root + "/edited", 2 * mebibyte, 3, mebibyte);
    writeContent(root + "/linked", 2 * mebibyte, 3);
    test::makeHardLink(root + "/linked", root + "/linked-too");
    writeContent(root + "/shorter", 2 * mebibyte - 1, 3);
    test::makeSymlink(root + "/original", root + "/symlink");
    writeContent(root + "/immutable", 2 * mebibyte, 3);
    const int immutableFd = open((root + "/immutable").c_str(), O_RDONLY);
    int flags = FS_IMMUTABLE_FL;
    ASSERT_EQ(ioctl(immutableFd, FS_IOC_SETFLAGS, &flags), 0) << std::strerror(errno);
    const std::string immutableBefore = test::readText(root + "/immutable");

    struct Case {
        std::string copy;
        std::string reason;
    };
    const std::vector<Case> cases = {
        {"edited", "The file changed since the scan, so it was left alone."},
        {"shorter", "The file changed since the scan, so it was left alone."},
        {"linked", "The file has hard links, so it was left alone."},
        {"symlink", "Not a regular file."},
        {"missing", "Not a regular file."},
        {"immutable", std::strerror(EPERM)},
    };
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const Case& c : cases) {
        pairs.emplace_back(root + "/" + c.copy, root + "/original");
    }
    const FileClone::CloneReport report = FileClone::share(pairs);

    flags = 0;
    ioctl(immutableFd, FS_IOC_SETFLAGS, &flags);
    close(immutableFd);
    EXPECT_TRUE(report.converted.empty());
    ASSERT_EQ(report.failures.size(), cases.size());
    for (size_t index = 0; index < cases.size(); ++index) {
        EXPECT_EQ(report.failures[index].path, root + "/" + cases[index].copy);
        EXPECT_EQ(report.failures[index].reason, cases[index].reason) << cases[index].copy;
        EXPECT_TRUE(Uuid::parse(report.failures[index].id).has_value());
    }
    EXPECT_EQ(test::readText(root + "/immutable"), immutableBefore);
    EXPECT_TRUE(temporaryClones(root).empty());

    // An original with other names is cloned all the same.
    writeContent(root + "/copy-of-linked", 2 * mebibyte, 3);
    const auto shared = FileClone::share({{root + "/copy-of-linked", root + "/linked-too"}});
    EXPECT_EQ(shared.converted, std::vector<std::string>{root + "/copy-of-linked"});
}

TEST(FileClone, FilesystemsWithoutReflinksAreUnsupportedAndKeepNoTemporaryFile) {
    TempDir dir;
    std::vector<std::string> folders;
    test::ScratchMount tmpfs(dir / "tmpfs");
    if (tmpfs.mounted()) {
        folders.push_back(dir / "tmpfs");
    }
    // The temporary folder's own filesystem, when it is one that cannot share blocks either.
    const std::string type = test::commandOutput("stat -f -c %T '" + dir.path() + "'");
    if (type.starts_with("ext2/ext3") || type.starts_with("tmpfs")) {
        folders.push_back(dir / "plain");
    }
    if (folders.empty()) {
        GTEST_SKIP() << "no filesystem without reflinks here: " << tmpfs.whyNot();
    }
    for (const std::string& folder : folders) {
        writeContent(folder + "/original", mebibyte, 4);
        writeContent(folder + "/copy", mebibyte, 4);
        const std::string before = test::readText(folder + "/copy");
        const auto report = FileClone::share({{folder + "/copy", folder + "/original"}});
        ASSERT_EQ(report.failures.size(), 1u) << folder;
        EXPECT_EQ(report.failures[0].reason,
                  "This disk doesn't support shared copies (it isn't APFS).");
        EXPECT_TRUE(temporaryClones(folder).empty()) << folder;
        EXPECT_EQ(test::readText(folder + "/copy"), before);
    }
}

TEST(FileClone, CopiesOnAnotherDiskAreRefused) {
    TempDir dir;
    test::ReflinkMount xfs(dir.path());
    REQUIRE_REFLINKS(xfs);
    writeContent(xfs.path() + "/original", mebibyte, 5);
    writeContent(dir / "copy", mebibyte, 5);
    const auto outcome = FileClone::replace(dir / "copy", xfs.path() + "/original");
    ASSERT_TRUE(std::holds_alternative<FileClone::Failure>(outcome));
    EXPECT_EQ(std::get<FileClone::Failure>(outcome).kind, FileClone::FailureKind::differentVolumes);
}

TEST(FileClone, ClonesFoundByTheSearchCountAsOneStoredCopy) {
    TempDir dir;
    test::ReflinkMount xfs(dir.path());
    REQUIRE_REFLINKS(xfs);
    const std::string root = xfs.path();
    writeContent(root + "/a", 4 * mebibyte, 6);
    writeContent(root + "/b", 4 * mebibyte, 6);
    writeContent(root + "/c", 4 * mebibyte, 6);
    ASSERT_EQ(platform::cloneFile(root + "/a", root + "/clone-of-a"), 0);
    ::rename((root + "/clone-of-a").c_str(), (root + "/c").c_str());
    const ScanResult scan = test::scanOf(root);

    const auto groups = findDuplicates(scan.files, duplicateMinSize, [](double) {});
    ASSERT_EQ(groups.size(), 1u);
    std::set<std::string> shared;
    for (const FileNode* node : groups[0].shared) {
        shared.insert(node->name);
    }
    EXPECT_EQ(shared, (std::set<std::string>{"a", "c"}));
    EXPECT_EQ(groups[0].recoverableBytes(), groups[0].size);
}

TEST(FileClone, AlreadySharedAtTheExactThresholds) {
    struct Case {
        int64_t blocks;
        int64_t privateBytes;
        bool shared;
    };
    for (const Case& c :
         {Case{79, 4095, true}, Case{79, 4096, false}, Case{80, 4095, true}, Case{80, 4096, false},
          Case{2048, 104856, true}, Case{2048, 104857, false}, Case{8, 4096, false}}) {
        EXPECT_EQ(FileClone::isAlreadyShared(c.blocks, c.privateBytes), c.shared)
            << c.blocks << " blocks, " << c.privateBytes << " private";
    }
}

TEST(FileClone, TheSweepTakesOnlyStaleTemporaryClones) {
    TempDir dir;
    const std::string stale = std::string(FileClone::temporaryPrefix) + Uuid::make();
    const std::string linked = std::string(FileClone::temporaryPrefix) + Uuid::make();
    const std::vector<std::string> kept = {".dorvik-clone-not-a-uuid", "copy.bin", linked,
                                           linked + "-other-name"};
    test::writeText(dir / stale, "left by a crash");
    test::writeText(dir / ".dorvik-clone-not-a-uuid", "someone else's");
    test::writeText(dir / "copy.bin", "the user's");
    test::writeText(dir / linked, "two names");
    test::makeHardLink(dir / linked, dir / (linked + "-other-name"));

    FileClone::sweepStaleClones(dir.path());
    EXPECT_TRUE(test::entryExists(dir / stale)) << "changed less than a minute ago";

    FileClone::sweepStaleClones(dir.path(), 0);
    EXPECT_FALSE(test::entryExists(dir / stale));
    for (const std::string& name : kept) {
        EXPECT_TRUE(test::entryExists(dir / name)) << name;
    }
}

} // namespace
} // namespace dorvik
