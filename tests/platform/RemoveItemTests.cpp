// Permanent removal on real files: links are removed, never followed; the filesystem's edge is
// never crossed; what cannot go completely is a failure.

#include "platform/RemoveItem.h"
#include "support/ScratchMount.h"
#include "support/TempDir.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik {
namespace {

namespace fs = std::filesystem;
using platform::FileErrorKind;
using platform::removeItem;

TEST(RemoveItem, LinksAreRemovedAndWhatTheyPointToIsNeverTouched) {
    test::TempDir dir;
    test::writeFile(dir / "outside/folder/precious.txt", 5000);
    test::writeFile(dir / "outside/file.txt", 5000);
    test::writeFile(dir / "victim/deep/er/data.bin", 70000);
    test::makeSymlink(dir / "outside/folder", dir / "victim/to-folder");
    test::makeSymlink(dir / "outside/file.txt", dir / "victim/deep/to-file");
    test::makeSymlink(dir / "nowhere", dir / "victim/dangling");
    test::makeSymlink(dir / "outside/folder", dir / "top-link");

    EXPECT_EQ(removeItem(dir / "victim"), std::nullopt);
    EXPECT_FALSE(test::entryExists(dir / "victim"));
    EXPECT_EQ(removeItem(dir / "top-link"), std::nullopt);
    EXPECT_FALSE(test::entryExists(dir / "top-link"));
    EXPECT_EQ(test::readText(dir / "outside/folder/precious.txt").size(), 5000u);
    EXPECT_EQ(test::readText(dir / "outside/file.txt").size(), 5000u);
}

TEST(RemoveItem, AFolderSwappedForALinkLosesOnlyTheLink) {
    test::TempDir dir;
    test::writeFile(dir / "home/cache/a.bin", 4096);
    test::writeFile(dir / "home/documents/thesis.tex", 4096);
    // Planned as a folder; by the time of the removal the name is a link to other data.
    fs::rename(dir / "home/cache", dir / "home/cache-moved");
    test::makeSymlink(dir / "home/documents", dir / "home/cache");

    EXPECT_EQ(removeItem(dir / "home/cache"), std::nullopt);
    EXPECT_FALSE(test::entryExists(dir / "home/cache"));
    EXPECT_TRUE(test::entryExists(dir / "home/documents/thesis.tex"));
    EXPECT_TRUE(test::entryExists(dir / "home/cache-moved/a.bin"));
}

TEST(RemoveItem, WhatCannotBeRemovedIsAFailure) {
    test::TempDir dir;
    test::writeFile(dir / "file.txt", 10);
    test::makeFolder(dir / "empty");
    const struct {
        std::string path;
        std::optional<FileErrorKind> error;
    } cases[] = {
        {dir / "file.txt", std::nullopt},
        {dir / "empty", std::nullopt},
        {dir / "file.txt", FileErrorKind::noSuchFile}, // again: already gone
        {dir / "missing/below", FileErrorKind::noSuchFile},
        {dir / "..", FileErrorKind::other},
        {"/", FileErrorKind::other},
    };
    for (const auto& c : cases) {
        const auto error = removeItem(c.path);
        EXPECT_EQ(error.has_value(), c.error.has_value()) << c.path;
        if (error && c.error) {
            EXPECT_EQ(error->kind, *c.error) << c.path;
            EXPECT_FALSE(error->description.empty());
        }
    }
    EXPECT_TRUE(test::entryExists(dir.path()));
}

// What the unprivileged user saw after removing "victim".
struct PartialRemoval {
    bool failed;
    FileErrorKind kind;
    bool victimStays;
    bool lockedFileStays;
    bool looseFileStays;
    bool unreadableEmptyStays;
};

TEST(RemoveItem, AFolderThatCannotBeEmptiedIsAFailureAndKeepsWhatIsLocked) {
    test::TempDir dir;
    const std::string victim = dir / "victim";
    test::writeFile(victim + "/loose.txt", 100);
    test::writeFile(victim + "/locked/keep.txt", 100);
    test::makeFolder(victim + "/unreadable-empty");
    test::handToUnprivileged(dir.path());
    chmod((victim + "/locked").c_str(), 0555);
    chmod((victim + "/unreadable-empty").c_str(), 0300);

    const auto seen = test::runUnprivileged<PartialRemoval>([&] {
        const auto error = removeItem(victim);
        return PartialRemoval{error.has_value(),
                              error ? error->kind : FileErrorKind::other,
                              test::entryExists(victim),
                              test::entryExists(victim + "/locked/keep.txt"),
                              test::entryExists(victim + "/loose.txt"),
                              test::entryExists(victim + "/unreadable-empty")};
    });
    ASSERT_TRUE(seen);
    EXPECT_TRUE(seen->failed);
    EXPECT_EQ(seen->kind, FileErrorKind::noPermission);
    EXPECT_TRUE(seen->victimStays);
    EXPECT_TRUE(seen->lockedFileStays);
    // Everything else that could go went.
    EXPECT_FALSE(seen->looseFileStays);
    EXPECT_FALSE(seen->unreadableEmptyStays);
}

TEST(RemoveItem, AFilesystemMountedInsideIsLeftAlone) {
    test::TempDir dir;
    test::writeFile(dir / "victim/own.txt", 100);
    test::ScratchMount mount(dir / "victim/mounted");
    if (!mount.mounted()) {
        GTEST_SKIP() << mount.whyNot();
    }
    test::writeFile(dir / "victim/mounted/other-filesystem.txt", 100);

    const auto error = removeItem(dir / "victim");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, FileErrorKind::mountPoint);
    EXPECT_TRUE(test::entryExists(dir / "victim/mounted/other-filesystem.txt"));
    EXPECT_FALSE(test::entryExists(dir / "victim/own.txt"));
    // The mount point itself is no folder to empty either.
    const auto again = removeItem(dir / "victim/mounted");
    ASSERT_TRUE(again);
    EXPECT_EQ(again->kind, FileErrorKind::mountPoint);
    EXPECT_TRUE(test::entryExists(dir / "victim/mounted/other-filesystem.txt"));
}

TEST(RemoveItem, ABindMountIsNeverCrossedWhateverItsDevice) {
    test::TempDir dir;
    test::writeFile(dir / "source/inner/keep.txt", 100);
    test::writeFile(dir / "other/keep.txt", 100);
    test::writeFile(dir / "victim/own.txt", 100);
    // Two more views of folders on the same filesystem: one inside the folder removed, one that
    // is itself the item removed. The device numbers all agree; only the mounts differ.
    test::ScratchMount inside(dir / "victim/bound", test::ScratchMount::BindOf{dir / "source"});
    if (!inside.mounted()) {
        GTEST_SKIP() << inside.whyNot();
    }
    test::ScratchMount item(dir / "item", test::ScratchMount::BindOf{dir / "other"});
    ASSERT_TRUE(item.mounted()) << item.whyNot();

    const auto error = removeItem(dir / "victim");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, FileErrorKind::mountPoint);
    EXPECT_TRUE(test::entryExists(dir / "source/inner/keep.txt"));
    EXPECT_TRUE(test::entryExists(dir / "victim/bound/inner/keep.txt"));
    EXPECT_FALSE(test::entryExists(dir / "victim/own.txt"));

    const auto refused = removeItem(dir / "item");
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->kind, FileErrorKind::mountPoint);
    EXPECT_TRUE(test::entryExists(dir / "other/keep.txt"));
}

// A chain of `depth` folders under `top`, each named "d", with a file at the bottom. Made relative
// to each folder's descriptor: the whole path is far longer than a path may be.
void makeDeepChain(const std::string& top, int depth) {
    test::makeFolder(top);
    int fd = open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_GE(fd, 0);
    for (int level = 0; level < depth; ++level) {
        ASSERT_EQ(mkdirat(fd, "d", 0755), 0);
        const int inner = openat(fd, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(fd);
        ASSERT_GE(inner, 0);
        fd = inner;
    }
    const int file = openat(fd, "bottom.txt", O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    EXPECT_GE(file, 0);
    close(file);
    close(fd);
}

TEST(RemoveItem, AnyDepthWithFewDescriptors) {
    test::TempDir dir;
    makeDeepChain(dir / "deep", 3000);
    test::writeFile(dir / "deep/beside.txt", 10);
    // Far fewer descriptors than levels: one per level cannot work.
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit low = before;
    low.rlim_cur = 256;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);
    const auto error = removeItem(dir / "deep");
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(error, std::nullopt) << error->description;
    EXPECT_FALSE(test::entryExists(dir / "deep"));
}

} // namespace
} // namespace dorvik
