// The deletion history: its file, its cap, restoring and undo, on real files in a home and data
// folder of the test's own.

#include "base/Dates.h"
#include "platform/Trash.h"
#include "removal/DeletionEngine.h"
#include "removal/DeletionHistory.h"
#include "removal/HistoryFile.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>

namespace dorvik {
namespace {

namespace fs = std::filesystem;

HistoryEntry entry(int number, std::optional<std::string> trashPath = std::nullopt) {
    char id[37];
    std::snprintf(id, sizeof id, "00000000-0000-4000-8000-%012d", number);
    return HistoryEntry{id,
                        Dates::referenceDateSince1970 + number + 0.25,
                        "/Users/me/file" + std::to_string(number),
                        std::move(trashPath),
                        number * 100,
                        false};
}

std::vector<HistoryEntry> entries(int first, int count) {
    std::vector<HistoryEntry> list;
    for (int number = first; number < first + count; ++number) {
        list.push_back(entry(number));
    }
    return list;
}

class DeletionHistoryTest : public testing::Test, protected test::TestHome {
protected:
    std::string file = dataHome + "/Dorvik/history.json";

    // Removes the paths through the engine and records them, as a run does.
    std::vector<HistoryEntry> removeAndRecord(DeletionHistory& history,
                                              const std::vector<std::string>& paths,
                                              Removal removal = Removal::trash) {
        std::vector<DeletionRequest> requests;
        for (const std::string& path : paths) {
            requests.push_back(makeDeletionRequest(path, 10, removal));
        }
        const DeletionOutcome outcome = DeletionEngine::run(requests);
        EXPECT_TRUE(outcome.report.failures.empty());
        history.record(outcome.entries);
        return outcome.entries;
    }
};

TEST(HistoryFile, EntriesInTheirJsonForm) {
    HistoryEntry trashed = entry(1, "/Users/me/.local/share/Trash/files/file1");
    trashed.restored = true;
    const std::vector<HistoryEntry> list = {trashed, entry(2)};
    const nlohmann::json document = nlohmann::json::parse(HistoryFile::encode(list));
    EXPECT_EQ(document, nlohmann::json::parse(R"([
        {"id": "00000000-0000-4000-8000-000000000001", "date": 1.25,
         "originalPath": "/Users/me/file1",
         "trashPath": "/Users/me/.local/share/Trash/files/file1", "size": 100, "restored": true},
        {"id": "00000000-0000-4000-8000-000000000002", "date": 2.25,
         "originalPath": "/Users/me/file2", "size": 200, "restored": false}
    ])"));
    EXPECT_EQ(HistoryFile::decode(HistoryFile::encode(list)), list);
}

TEST(HistoryFile, OneBadEntryFailsTheWholeFile) {
    const std::string good = R"({"id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f", "date": 10.5,
        "originalPath": "/a", "size": 7, "restored": false)";
    const struct {
        std::string text;
        bool decodes;
    } cases[] = {
        {"[" + good + "}]", true},
        {"[" + good + R"(, "trashPath": null}])", true},
        {"[" + good + R"(, "trashPath": "/t"}])", true},
        {"[]", true},
        {"[" + good + R"(, "trashPath": 3}])", false},
        {R"([{"id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f", "date": 1, "originalPath": "/a",
             "size": 7}])",
         false}, // no "restored"
        {R"([{"date": 1, "originalPath": "/a", "size": 7, "restored": true}])", false},
        {R"([{"id": "not-a-uuid", "date": 1, "originalPath": "/a", "size": 7,
             "restored": true}])",
         false},
        {R"([{"id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f", "date": "today",
             "originalPath": "/a", "size": 7, "restored": true}])",
         false},
        {R"([{"id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f", "date": 1, "originalPath": "/a",
             "size": 7.5, "restored": true}])",
         false},
        {R"([{"id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f", "date": 1, "originalPath": "/a",
             "size": 7, "restored": "yes"}])",
         false},
        {"[" + good + "}, 3]", false},
        {"{}", false},
        {"", false},
        {"[" + good + "}", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(HistoryFile::decode(c.text).has_value(), c.decodes) << c.text;
    }
    const auto decoded = HistoryFile::decode("[" + good + "}]");
    ASSERT_TRUE(decoded);
    EXPECT_EQ((*decoded)[0].id, "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_DOUBLE_EQ((*decoded)[0].date, Dates::referenceDateSince1970 + 10.5);
    EXPECT_FALSE((*decoded)[0].trashPath);
}

TEST_F(DeletionHistoryTest, AFileOfTheWrongShapeLosesNothingButItself) {
    test::writeText(dataHome + "/Dorvik/history.json", R"([{"id": "x"}])");
    test::writeText(dataHome + "/Dorvik/scans.json", "[]");
    {
        DeletionHistory history(file);
        EXPECT_TRUE(history.entries().empty());
        EXPECT_EQ(history.fileURL(), file);
    }
    // Nothing is rewritten until something changes.
    EXPECT_EQ(test::readText(file), R"([{"id": "x"}])");
    DeletionHistory history(file);
    history.record({entry(1)});
    EXPECT_EQ(DeletionHistory(file).entries(), std::vector<HistoryEntry>{entry(1)});
    EXPECT_EQ(test::readText(dataHome + "/Dorvik/scans.json"), "[]");
    // No file at all starts empty too, and so does a file where a folder should be.
    EXPECT_TRUE(DeletionHistory(dir / "nowhere/history.json").entries().empty());
    EXPECT_TRUE(DeletionHistory(dir.path()).entries().empty());
    EXPECT_EQ(DeletionHistory::defaultPath(), file);
}

TEST_F(DeletionHistoryTest, TheNewestFiveThousandAreKept) {
    DeletionHistory history(file);
    history.record(entries(0, 5000));
    history.record(entries(9000, 3));
    const std::vector<HistoryEntry>& kept = history.entries();
    ASSERT_EQ(kept.size(), 5000u);
    EXPECT_EQ(kept[0], entry(9000));
    EXPECT_EQ(kept[2], entry(9002));
    EXPECT_EQ(kept[3], entry(0));
    EXPECT_EQ(kept.back(), entry(4996)); // 4997 to 4999 fell off the end
    EXPECT_EQ(DeletionHistory(file).entries(), kept);

    history.record(entries(20000, 5002));
    EXPECT_EQ(history.entries().front(), entry(20000));
    EXPECT_EQ(history.entries().back(), entry(24999));
    history.clear();
    EXPECT_TRUE(DeletionHistory(file).entries().empty());
}

TEST_F(DeletionHistoryTest, AFailedSaveKeepsTheLogInMemory) {
    test::writeText(dir / "blocked", "a file where the folder should be");
    DeletionHistory history(dir / "blocked/history.json");
    history.record({entry(1), entry(2)});
    EXPECT_EQ(history.entries().size(), 2u);
    EXPECT_EQ(test::readText(dir / "blocked"), "a file where the folder should be");
}

TEST_F(DeletionHistoryTest, RestoreRecreatesTheFolderAndMarksTheEntry) {
    test::writeText(home + "/Projects/app/notes/todo.txt", "ship it");
    DeletionHistory history(file);
    const auto recorded = removeAndRecord(history, {home + "/Projects/app/notes/todo.txt"});
    fs::remove_all(home + "/Projects");

    EXPECT_EQ(history.restore(recorded[0]), std::nullopt);
    EXPECT_EQ(test::readText(home + "/Projects/app/notes/todo.txt"), "ship it");
    EXPECT_TRUE(history.entries()[0].restored);
    EXPECT_TRUE(DeletionHistory(file).entries()[0].restored);
    EXPECT_FALSE(test::entryExists(dataHome + "/Trash/info/todo.txt.trashinfo"));

    // A permanent entry is left alone, without error.
    const HistoryEntry permanent = entry(7);
    history.record({permanent});
    EXPECT_EQ(history.restore(permanent), std::nullopt);
    EXPECT_FALSE(history.entries()[0].restored);
    // A restore over something fails and moves nothing.
    test::writeText(home + "/again.txt", "first");
    const auto again = removeAndRecord(history, {home + "/again.txt"});
    test::writeText(home + "/again.txt", "second");
    EXPECT_TRUE(history.restore(again[0]));
    EXPECT_EQ(test::readText(home + "/again.txt"), "second");
    EXPECT_EQ(test::readText(*again[0].trashPath), "first");
}

TEST_F(DeletionHistoryTest, UndoNeverOverwritesAndNeverRenames) {
    for (const char* name :
         {"back.txt", "taken.txt", "emptied.txt", "gone-for-good.txt", "twice.txt"}) {
        test::writeText(home + "/Desktop/" + name, name);
    }
    DeletionHistory history(file);
    const auto trashed =
        removeAndRecord(history, {home + "/Desktop/back.txt", home + "/Desktop/taken.txt",
                                  home + "/Desktop/emptied.txt", home + "/Desktop/twice.txt"});
    const auto permanent =
        removeAndRecord(history, {home + "/Desktop/gone-for-good.txt"}, Removal::permanent);
    test::writeText(home + "/Desktop/taken.txt", "a new file in its place");
    fs::remove(*trashed[2].trashPath); // the Trash was emptied

    const struct {
        HistoryEntry entry;
        bool restorable;
        std::string_view method;
    } cases[] = {
        {trashed[0], true, "Trash"}, {trashed[1], false, "Trash"},     {trashed[2], false, "Trash"},
        {trashed[3], true, "Trash"}, {permanent[0], false, "Deleted"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(canRestore(c.entry), c.restorable) << c.entry.originalPath;
        EXPECT_EQ(historyMethod(c.entry), c.method) << c.entry.originalPath;
    }

    // The toast's copies still say "not restored" the second time: the log knows better.
    const std::vector<HistoryEntry> all = {trashed[0], trashed[1],   trashed[2],
                                           trashed[3], permanent[0], trashed[3]};
    EXPECT_EQ(undo(history, all).restored, 2);
    EXPECT_EQ(test::readText(home + "/Desktop/back.txt"), "back.txt");
    EXPECT_EQ(test::readText(home + "/Desktop/twice.txt"), "twice.txt");
    EXPECT_EQ(test::readText(home + "/Desktop/taken.txt"), "a new file in its place");
    EXPECT_EQ(test::readText(*trashed[1].trashPath), "taken.txt");
    EXPECT_FALSE(test::entryExists(home + "/Desktop/emptied.txt"));
    EXPECT_FALSE(test::entryExists(home + "/Desktop/gone-for-good.txt"));
    // Nothing came back under another name.
    EXPECT_EQ(std::distance(fs::directory_iterator(home + "/Desktop"), fs::directory_iterator()),
              3);

    for (const HistoryEntry& stored : history.entries()) {
        const bool back = stored.id == trashed[0].id || stored.id == trashed[3].id;
        EXPECT_EQ(stored.restored, back) << stored.originalPath;
        EXPECT_EQ(historyMethod(stored), back               ? "Restored"
                                         : stored.trashPath ? "Trash"
                                                            : "Deleted");
    }
    EXPECT_EQ(undo(history, all).restored, 0);

    // The Trash gives a freed name to the next item of that name: a restored entry points at
    // someone else's item now, and never brings it back.
    fs::remove(home + "/Desktop/back.txt");
    test::writeText(home + "/Elsewhere/back.txt", "another back.txt");
    const auto other = removeAndRecord(history, {home + "/Elsewhere/back.txt"});
    ASSERT_EQ(other[0].trashPath, trashed[0].trashPath);
    const auto stored = std::ranges::find(history.entries(), trashed[0].id, &HistoryEntry::id);
    ASSERT_NE(stored, history.entries().end());
    EXPECT_TRUE(stored->restored);
    EXPECT_FALSE(canRestore(*stored));
    EXPECT_EQ(undo(history, {trashed[0]}).restored, 0);
    EXPECT_FALSE(test::entryExists(home + "/Desktop/back.txt"));
    EXPECT_EQ(undo(history, {other[0]}).restored, 1);
    EXPECT_EQ(test::readText(home + "/Elsewhere/back.txt"), "another back.txt");
}

} // namespace
} // namespace dorvik
