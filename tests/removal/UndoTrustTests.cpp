// Undo trusts nothing history.json says on its own: it restores only an item that lies in a
// Trash Dorvik uses, whose .trashinfo names the entry's original place, that is still the item
// that was removed, and never through a link in the folders above that place. Each refusal is
// named. Real files in a home and data folder of the test's own.

#include "base/Dates.h"
#include "base/Uuid.h"
#include "removal/DeletionEngine.h"
#include "removal/DeletionHistory.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace dorvik {
namespace {

namespace fs = std::filesystem;

class UndoTrustTest : public testing::Test, protected test::TestHome {
protected:
    std::string file = dataHome + "/Dorvik/history.json";
    DeletionHistory history{file};

    HistoryEntry trashAndRecord(const std::string& path) {
        const DeletionOutcome outcome =
            DeletionEngine::run({makeDeletionRequest(path, 10, Removal::trash)});
        EXPECT_EQ(outcome.entries.size(), 1u) << path;
        history.record(outcome.entries);
        return outcome.entries.at(0);
    }
    // An entry written by someone else into history.json.
    HistoryEntry forged(const std::string& originalPath, const std::string& trashPath) {
        HistoryEntry entry{Uuid::make(), Dates::now(), originalPath, trashPath, 10, false};
        history.record({entry});
        return entry;
    }
    std::string reasonOf(const HistoryEntry& entry) {
        const UndoReport report = undo(history, {entry});
        EXPECT_EQ(report.restored, 0) << entry.originalPath;
        EXPECT_EQ(report.failures.size(), 1u) << entry.originalPath;
        return report.failures.empty() ? "" : report.failures[0].reason;
    }
};

TEST_F(UndoTrustTest, OnlyFromATrashDorvikUsesAndOnlyWhereItsInfoSays) {
    const std::string uid = std::to_string(geteuid());
    test::writeText(dir / "secret/key", "root's key");
    test::writeText(trashFiles + "/no-info.txt", "no info");
    test::writeText(dir / "fake/.Trash-" + uid + "/files/key", "looks trashed");
    test::writeText(dir / "fake/.Trash-" + uid + "/info/key.trashinfo",
                    "[Trash Info]\nPath=mine/key\nDeletionDate=2026-01-01T00:00:00\n");
    test::writeText(home + "/a/report.txt", "a's report");
    const HistoryEntry real = trashAndRecord(home + "/a/report.txt");

    const struct {
        HistoryEntry entry;
        std::string untouched; // must still be there afterwards
    } cases[] = {
        // A trashPath that is any file at all.
        {forged(home + "/stolen-key", dir / "secret/key"), dir / "secret/key"},
        // In the Trash's files folder, but no info says where it came from.
        {forged(home + "/no-info.txt", trashFiles + "/no-info.txt"), trashFiles + "/no-info.txt"},
        // A folder that only looks like a trash, not at the top of its filesystem.
        {forged(dir / "fake/mine/key", dir / "fake/.Trash-" + uid + "/files/key"),
         dir / "fake/.Trash-" + uid + "/files/key"},
        // A real trashed item, sent somewhere its info does not name.
        {forged(home + "/b/report.txt", *real.trashPath), *real.trashPath},
    };
    for (const auto& c : cases) {
        EXPECT_FALSE(reasonOf(c.entry).empty()) << c.entry.originalPath;
        EXPECT_TRUE(test::entryExists(c.untouched)) << c.untouched;
        EXPECT_FALSE(test::entryExists(c.entry.originalPath)) << c.entry.originalPath;
    }
    EXPECT_EQ(undo(history, {real}).restored, 1);
    EXPECT_EQ(test::readText(home + "/a/report.txt"), "a's report");
}

TEST_F(UndoTrustTest, NeverThroughALinkAboveTheOriginalPlace) {
    test::writeText(home + "/box/par/cache", "the cache");
    test::writeText(home + "/precious/keep", "keep");
    const HistoryEntry entry = trashAndRecord(home + "/box/par/cache");
    // The folder it came from is now a link to another.
    fs::remove_all(home + "/box/par");
    test::makeSymlink(home + "/precious", home + "/box/par");

    EXPECT_NE(reasonOf(entry).find("link"), std::string::npos);
    EXPECT_FALSE(test::entryExists(home + "/precious/cache"));
    EXPECT_TRUE(test::entryExists(*entry.trashPath));

    // Put back as a folder, the place is trusted again.
    fs::remove(home + "/box/par");
    EXPECT_EQ(undo(history, {entry}).restored, 1);
    EXPECT_EQ(test::readText(home + "/box/par/cache"), "the cache");
}

TEST_F(UndoTrustTest, AReusedTrashNameIsNotTheItemThatWasRemoved) {
    test::writeText(home + "/a/notes.txt", "a's notes");
    const HistoryEntry first = trashAndRecord(home + "/a/notes.txt");
    fs::remove_all(dataHome + "/Trash"); // the Trash was emptied
    test::writeText(home + "/b/notes.txt", "b's notes");
    const HistoryEntry second = trashAndRecord(home + "/b/notes.txt");
    ASSERT_EQ(first.trashPath, second.trashPath);

    EXPECT_FALSE(reasonOf(first).empty());
    EXPECT_FALSE(test::entryExists(home + "/a/notes.txt"));

    // The same place used twice: the info agrees, the item does not.
    test::writeText(home + "/a/notes.txt", "a's notes, second draft");
    const HistoryEntry third = trashAndRecord(home + "/a/notes.txt");
    fs::remove(*third.trashPath);
    test::writeText(*third.trashPath, "swapped in");
    EXPECT_NE(reasonOf(third).find("not the one"), std::string::npos);
    EXPECT_EQ(test::readText(*third.trashPath), "swapped in");

    const UndoReport report = undo(history, {second});
    EXPECT_EQ(report.restored, 1);
    EXPECT_TRUE(report.failures.empty());
    EXPECT_EQ(test::readText(home + "/b/notes.txt"), "b's notes");
}

TEST_F(UndoTrustTest, EachFailureIsNamedWithItsReason) {
    test::writeText(home + "/gone.txt", "gone");
    test::writeText(home + "/taken.txt", "taken");
    const HistoryEntry gone = trashAndRecord(home + "/gone.txt");
    const HistoryEntry taken = trashAndRecord(home + "/taken.txt");
    test::writeText(home + "/taken.txt", "a new one");
    fs::remove(*gone.trashPath);
    HistoryEntry permanent{Uuid::make(), Dates::now(), home + "/old.txt", std::nullopt, 1, false};
    history.record({permanent});

    const UndoReport report = undo(history, {gone, taken, permanent});
    EXPECT_EQ(report.restored, 0);
    ASSERT_EQ(report.failures.size(), 3u);
    const struct {
        std::string path;
        std::string reason;
    } expected[] = {
        {home + "/gone.txt", "It is no longer in the Trash."},
        {home + "/taken.txt", "Something else is at its original place."},
        {home + "/old.txt", "It was deleted permanently, not moved to the Trash."},
    };
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(report.failures[i].entry.originalPath, expected[i].path);
        EXPECT_EQ(report.failures[i].reason, expected[i].reason);
    }
}

} // namespace
} // namespace dorvik
