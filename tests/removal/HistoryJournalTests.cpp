// A batch killed at any point forgets nothing: each item is journalled as it goes, and the next
// writer of the history folds what a dead process left, adopts an item that reached the Trash
// without its entry, removes the .trashinfo Dorvik wrote for an item that never arrived, and
// sweeps Dorvik's own stale temporary files. The kills are real: a forked child ends with _exit
// at the moment under test.

#include "base/Dates.h"
#include "base/Uuid.h"
#include "platform/Trash.h"
#include "removal/DeletionEngine.h"
#include "removal/DeletionHistory.h"
#include "removal/HistoryJournal.h"
#include "removal/RemovalTransaction.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace dorvik {
namespace {

namespace fs = std::filesystem;

// Runs `work` in a child process that ends there and then, as a kill would end it.
void inChild(const std::function<void()>& work) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
}

pid_t deadProcess() {
    const pid_t child = fork();
    if (child == 0) {
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    return child;
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class HistoryJournalTest : public testing::Test, protected test::TestHome {
protected:
    std::string folder = dataHome + "/Dorvik";
    std::string file = folder + "/history.json";

    HistoryEntry entryFor(const std::string& path) {
        return HistoryEntry{Uuid::make(), Dates::now(), path, std::nullopt, 10, false};
    }
};

TEST_F(HistoryJournalTest, AKilledBatchLeavesEveryTrashedItemUndoable) {
    for (const char* name : {"one", "two", "three", "four"}) {
        test::writeText(home + "/" + name, name);
    }
    // Killed after three whole items and before the batch was recorded.
    inChild([&] {
        HistoryJournal journal(file);
        DeletionEngine::run({makeDeletionRequest(home + "/one", 10, Removal::trash),
                             makeDeletionRequest(home + "/two", 10, Removal::permanent),
                             makeDeletionRequest(home + "/three", 10, Removal::trash)},
                            &journal);
    });
    // Killed after the item reached the Trash, before its entry was journalled.
    inChild([&] {
        HistoryJournal journal(file);
        const HistoryEntry entry = entryFor(home + "/four");
        platform::moveToTrash(home + "/four", [&](const platform::TrashClaim& claim) {
            journal.claimed(entry, claim);
        });
    });
    EXPECT_FALSE(test::entryExists(home + "/one"));
    EXPECT_FALSE(test::entryExists(home + "/four"));

    DeletionHistory history(file);
    std::map<std::string, HistoryEntry> byPath;
    for (const HistoryEntry& entry : history.entries()) {
        byPath.emplace(entry.originalPath, entry);
    }
    ASSERT_EQ(byPath.size(), 4u);
    EXPECT_FALSE(byPath.at(home + "/two").trashPath);
    for (const char* name : {"one", "three", "four"}) {
        const HistoryEntry& entry = byPath.at(home + "/" + name);
        EXPECT_TRUE(entry.trashedItem) << name;
        EXPECT_TRUE(canRestore(entry)) << name;
    }
    const UndoReport report = undo(
        history, {byPath.at(home + "/one"), byPath.at(home + "/three"), byPath.at(home + "/four")});
    EXPECT_EQ(report.restored, 3);
    EXPECT_EQ(test::readText(home + "/four"), "four");
    // Folded and gone: only the history and its lock remain.
    EXPECT_EQ(namesIn(folder), (std::vector<std::string>{"history.json", "history.json.lock"}));
}

TEST_F(HistoryJournalTest, TheInfoOfAnItemThatNeverArrivedIsRemovedAndNoOtherInfo) {
    test::writeText(home + "/stays.txt", "stays");
    const std::string info = dataHome + "/Trash/info";
    // Killed with the name claimed and `written` of the .trashinfo on disk, the item not moved.
    const auto killedAfterInfo =
        [&](const std::function<std::string(const std::string&)>& written) {
            inChild([&] {
                HistoryJournal journal(file);
                const HistoryEntry entry = entryFor(home + "/stays.txt");
                platform::moveToTrash(home + "/stays.txt", [&](const platform::TrashClaim& claim) {
                    journal.claimed(entry, claim);
                    test::writeText(claim.infoPath, written(claim.infoText));
                    _exit(0);
                });
            });
            EXPECT_TRUE(test::entryExists(info + "/stays.txt.trashinfo"));
        };
    // Another program's info of the same shape stays through all of this.
    test::writeText(info + "/other.txt.trashinfo",
                    "[Trash Info]\nPath=/x/other.txt\nDeletionDate=2026-01-01T00:00:00\n");
    const struct {
        std::function<std::string(const std::string&)> written;
        bool removed;
    } cases[] = {
        {[](const std::string& text) { return text; }, true},
        {[](const std::string& text) { return text.substr(0, 20); }, true}, // cut short
        {[](const std::string&) { return std::string(); }, true},
        {[](const std::string&) { return std::string("[Trash Info]\nPath=/changed\n"); }, false},
    };
    for (const auto& c : cases) {
        fs::remove(info + "/stays.txt.trashinfo");
        killedAfterInfo(c.written);
        const DeletionHistory history(file);
        EXPECT_TRUE(history.entries().empty());
        EXPECT_EQ(test::readText(home + "/stays.txt"), "stays");
        EXPECT_EQ(test::entryExists(info + "/stays.txt.trashinfo"), !c.removed);
        EXPECT_TRUE(test::entryExists(info + "/other.txt.trashinfo"));
    }
}

TEST_F(HistoryJournalTest, StaleTemporaryFilesAreSweptAndLiveOnesKept) {
    const std::string dead = std::to_string(deadProcess());
    const std::string alive = std::to_string(getpid());
    const std::vector<std::string> stale = {
        "history.json.tmp-" + alive + "-42", // written under the lock we now hold
        "history.json.tmp-" + dead + "-7",
        "scans.json.tmp-" + dead + "-1",
        "last-scan.dvscan.tmp-" + dead + "-123",
    };
    const std::vector<std::string> kept = {
        "last-scan.dvscan.tmp-" + alive + "-9", // a write that may be going on now
        "history.json.tmp-" + dead + "-x",      // not a name our writes give
    };
    for (const std::string& name : stale) {
        test::writeText(folder + "/" + name, "half");
    }
    for (const std::string& name : kept) {
        test::writeText(folder + "/" + name, "half");
    }
    DeletionHistory(file).record({entryFor(home + "/x")});
    for (const std::string& name : stale) {
        EXPECT_FALSE(test::entryExists(folder + "/" + name)) << name;
    }
    for (const std::string& name : kept) {
        EXPECT_TRUE(test::entryExists(folder + "/" + name)) << name;
    }
}

// The one call every front end makes: what went is in the history file when it returns, in
// request order, what was refused is not, and no journal is left behind.
TEST_F(HistoryJournalTest, ARemovalIsRecordedWholeWhenItReturns) {
    test::writeText(home + "/trashed", "a");
    test::writeText(home + "/deleted", "b");
    const DeletionOutcome outcome =
        carryOutRemoval({makeDeletionRequest(home + "/trashed", 10, Removal::trash),
                         makeDeletionRequest(home + "/missing", 10, Removal::trash),
                         makeDeletionRequest(home + "/deleted", 10, Removal::permanent)},
                        file);
    EXPECT_EQ(outcome.report.deletedPaths,
              (std::vector<std::string>{home + "/trashed", home + "/deleted"}));
    ASSERT_EQ(outcome.report.failures.size(), 1u);

    const DeletionHistory history(file);
    ASSERT_EQ(history.entries().size(), 2u);
    EXPECT_EQ(history.entries()[0].originalPath, home + "/trashed");
    EXPECT_TRUE(history.entries()[0].trashPath);
    EXPECT_EQ(history.entries()[1].originalPath, home + "/deleted");
    EXPECT_FALSE(history.entries()[1].trashPath);
    EXPECT_TRUE(leftOverJournals(file).empty());
    for (const std::string& name : namesIn(folder)) {
        EXPECT_EQ(name.find(".journal-"), std::string::npos) << name;
    }
}

} // namespace
} // namespace dorvik
