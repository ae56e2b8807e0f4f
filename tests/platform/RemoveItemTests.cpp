// Permanent removal on real files: links are removed, never followed; the filesystem's edge is
// never crossed; what cannot go completely is a failure.

#include "platform/RemoveItem.h"
#include "support/ScratchMount.h"
#include "support/TempDir.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

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
    EXPECT_EQ(error->kind, FileErrorKind::inUse);
    EXPECT_TRUE(test::entryExists(dir / "victim/mounted/other-filesystem.txt"));
    EXPECT_FALSE(test::entryExists(dir / "victim/own.txt"));
    // The mount point itself is no folder to empty either.
    const auto again = removeItem(dir / "victim/mounted");
    ASSERT_TRUE(again);
    EXPECT_EQ(again->kind, FileErrorKind::inUse);
    EXPECT_TRUE(test::entryExists(dir / "victim/mounted/other-filesystem.txt"));
}

} // namespace
} // namespace dorvik
