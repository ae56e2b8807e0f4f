#include "platform/WalkFolder.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <map>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace dorvik::platform {
namespace {

std::map<std::string, WalkStat> entriesOf(const FolderListing& listing) {
    std::map<std::string, WalkStat> entries;
    for (size_t i = 0; i < listing.size(); ++i) {
        entries.emplace(listing.name(i), listing.status(i));
    }
    return entries;
}

TEST(WalkFolder, ListsEveryEntryWithItsOwnStatus) {
    test::TempDir dir;
    test::writeFile(dir / "top/file.bin", 70000);
    test::makeFolder(dir / "top/sub");
    test::makeSymlink(dir / "top/file.bin", dir / "top/link");
    test::makeSymlink(dir / "nowhere", dir / "top/dangling");
    ASSERT_EQ(mkfifo((dir / "top/pipe").c_str(), 0600), 0);

    const WalkStat root = walkStatus(dir / "top");
    ASSERT_EQ(root.type, EntryType::folder);
    OpenFolderBudget budget;
    FolderListing listing;
    listFolder(WalkFolder(dir / "top", root), listing, budget);
    ASSERT_TRUE(listing.complete());
    const auto entries = entriesOf(listing);
    ASSERT_EQ(entries.size(), 5u);
    const struct {
        std::string name;
        EntryType type;
    } expected[] = {
        {"file.bin", EntryType::file},    {"sub", EntryType::folder}, {"link", EntryType::symlink},
        {"dangling", EntryType::symlink}, {"pipe", EntryType::other},
    };
    for (const auto& [name, type] : expected) {
        const WalkStat& status = entries.at(name);
        EXPECT_EQ(status.type, type) << name;
        EXPECT_EQ(status.blocks * 512, test::allocatedBytes(dir / ("top/" + name))) << name;
        EXPECT_EQ(status.device, root.device) << name;
    }
    EXPECT_EQ(entries.at("file.bin").size, 70000);
    EXPECT_EQ(entries.at("file.bin").links, 1u);

    // The listing is filled again from nothing for the next folder.
    const size_t sub = [&] {
        for (size_t i = 0; i < listing.size(); ++i) {
            if (listing.name(i) == "sub") {
                return i;
            }
        }
        return listing.size();
    }();
    const WalkFolder subfolder = WalkFolder(dir / "top", root).subfolder(listing, sub);
    EXPECT_EQ(subfolder.path(), dir / "top/sub");
    listFolder(subfolder, listing, budget);
    EXPECT_TRUE(listing.complete());
    EXPECT_EQ(listing.size(), 0u);

    EXPECT_EQ(walkStatus(dir / "top/link").type, EntryType::symlink);
    EXPECT_EQ(walkStatus(dir / "missing").type, EntryType::unknown);
}

// A folder is opened by its path well after its parent was listed; whatever stands there by
// then, even a link to another place, must not be listed in its stead.
TEST(WalkFolder, AFolderReplacedSinceItWasMetIsNotListed) {
    test::TempDir dir;
    test::writeFile(dir / "root/kept/a.txt", 10);
    test::writeFile(dir / "root/moved/b.txt", 10);
    test::writeFile(dir / "root/linked/c.txt", 10);
    test::writeFile(dir / "elsewhere/secret.txt", 10);

    const WalkFolder root(dir / "root", walkStatus(dir / "root"));
    OpenFolderBudget budget;
    FolderListing listing;
    listFolder(root, listing, budget);
    ASSERT_TRUE(listing.complete());
    std::map<std::string, WalkFolder> folders;
    for (size_t i = 0; i < listing.size(); ++i) {
        folders.emplace(listing.name(i), root.subfolder(listing, i));
    }
    ASSERT_EQ(std::rename((dir / "root/moved").c_str(), (dir / "moved-away").c_str()), 0);
    test::writeFile(dir / "root/moved/new.txt", 10);
    ASSERT_EQ(std::rename((dir / "root/linked").c_str(), (dir / "linked-away").c_str()), 0);
    test::makeSymlink(dir / "elsewhere", dir / "root/linked");

    const struct {
        std::string name;
        bool listed;
    } cases[] = {{"kept", true}, {"moved", false}, {"linked", false}};
    for (const auto& [name, listed] : cases) {
        listFolder(folders.at(name), listing, budget);
        EXPECT_EQ(listing.complete(), listed) << name;
        EXPECT_EQ(listing.size(), listed ? 1u : 0u) << name;
    }
}

TEST(WalkFolder, KnowsTheFoldersAboveItself) {
    test::TempDir dir;
    test::makeFolder(dir / "a/b");
    test::makeFolder(dir / "a/c");
    const WalkStat rootStatus = walkStatus(dir.path());
    const WalkFolder root(dir.path(), rootStatus);
    OpenFolderBudget budget;
    FolderListing listing;
    listFolder(root, listing, budget);
    ASSERT_EQ(listing.size(), 1u);
    const WalkFolder a = root.subfolder(listing, 0);
    listFolder(a, listing, budget);
    ASSERT_EQ(listing.size(), 2u);
    const WalkFolder below = a.subfolder(listing, 0);

    EXPECT_TRUE(below.isItselfOrAbove(rootStatus));
    EXPECT_TRUE(below.isItselfOrAbove(a.status()));
    EXPECT_TRUE(below.isItselfOrAbove(below.status()));
    EXPECT_FALSE(below.isItselfOrAbove(listing.status(1))); // its sibling
    EXPECT_FALSE(root.isItselfOrAbove(a.status()));
    EXPECT_TRUE(below.isOnWalkVolume());
}

int openDescriptors() {
    const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<int>(std::distance(begin(entries), end(entries)));
}

// Every folder of a tree is listed whatever the budget, and no more folders stay open than it
// allows; the folders kept open spare their subfolders the lookup of the whole path.
TEST(WalkFolder, KeepsNoMoreFoldersOpenThanItsBudget) {
    test::TempDir dir;
    std::string path = dir / "chain";
    for (int level = 0; level < 30; ++level) {
        test::writeFile(path + "/side/file", 10);
        path += "/level";
    }
    test::makeFolder(path);
    const int before = openDescriptors();
    for (const int budgetFolders : {0, 3, OpenFolderBudget::usualFolders}) {
        OpenFolderBudget budget(budgetFolders);
        FolderListing listing;
        std::vector<WalkFolder> pending{WalkFolder(dir / "chain", walkStatus(dir / "chain"))};
        int listed = 0;
        int mostOpen = 0;
        while (!pending.empty()) {
            const WalkFolder folder = std::move(pending.back());
            pending.pop_back();
            listFolder(folder, listing, budget);
            EXPECT_TRUE(listing.complete()) << folder.path();
            ++listed;
            for (size_t i = 0; i < listing.size(); ++i) {
                if (listing.status(i).type == EntryType::folder) {
                    pending.push_back(folder.subfolder(listing, i));
                }
            }
            mostOpen = std::max(mostOpen, openDescriptors() - before);
        }
        EXPECT_EQ(listed, 30 * 2 + 1) << budgetFolders;
        EXPECT_LE(mostOpen, budgetFolders) << budgetFolders;
        EXPECT_GE(mostOpen, std::min(budgetFolders, 1)) << budgetFolders;
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(WalkFolder, SubfoldersOfTheWholeDisk) {
    const WalkFolder root("/", walkStatus("/"));
    OpenFolderBudget budget;
    FolderListing listing;
    listFolder(root, listing, budget);
    ASSERT_TRUE(listing.complete());
    size_t folders = 0;
    FolderListing below;
    for (size_t i = 0; i < listing.size(); ++i) {
        if (listing.status(i).type != EntryType::folder ||
            !root.subfolder(listing, i).isOnWalkVolume()) {
            continue;
        }
        const WalkFolder folder = root.subfolder(listing, i);
        EXPECT_EQ(folder.path(), "/" + std::string(listing.name(i)));
        listFolder(folder, below, budget);
        folders += below.complete() ? 1 : 0;
    }
    EXPECT_GT(folders, 3u);
}

} // namespace
} // namespace dorvik::platform
