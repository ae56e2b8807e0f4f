// dorvik-cli remove killed with SIGKILL at random moments of its batch, again and again: every
// item that left its place can be undone afterwards, and nothing of Dorvik's is left lying
// about (no temporary file, no journal, no .trashinfo without its item). DORVIK_KILL_RUNS sets
// the number of runs (100 for the full loop; fewer by default to keep the suite quick).

#include "removal/DeletionHistory.h"
#include "support/ChildProcess.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

namespace dorvik {
namespace {

namespace fs = std::filesystem;

int runCount() {
    const char* value = std::getenv("DORVIK_KILL_RUNS");
    return value != nullptr ? std::max(1, std::atoi(value)) : 15;
}

size_t countIn(const std::string& folder) {
    if (!fs::exists(folder)) {
        return 0;
    }
    return static_cast<size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

class KilledRemovalTest : public testing::Test, protected test::TestHome {};

TEST_F(KilledRemovalTest, EveryTrashedItemStaysUndoableAndNothingStrayIsLeft) {
    constexpr int itemsPerRun = 40;
    const int runs = runCount();
    std::mt19937 random(20261123);
    std::vector<std::string> everyPath;
    for (int run = 0; run < runs; ++run) {
        std::vector<std::string> arguments = {"remove", "--yes", "--include-review"};
        for (int item = 0; item < itemsPerRun; ++item) {
            const std::string path = home + "/Downloads/run" + std::to_string(run) + "/item" +
                                     std::to_string(item) + ".bin";
            test::writeText(path, path);
            arguments.push_back(path);
            everyPath.push_back(path);
        }
        test::ChildProcess remove(DORVIK_CLI, arguments);
        std::this_thread::sleep_for(
            std::chrono::microseconds(std::uniform_int_distribution<int>(0, 60000)(random)));
        remove.stop();
    }

    DeletionHistory history(DeletionHistory::defaultPath());
    std::map<std::string, HistoryEntry> trashed;
    for (const HistoryEntry& entry : history.entries()) {
        trashed.emplace(entry.originalPath, entry);
    }
    size_t gone = 0;
    for (const std::string& path : everyPath) {
        if (test::entryExists(path)) {
            continue;
        }
        ++gone;
        const auto found = trashed.find(path);
        ASSERT_NE(found, trashed.end()) << path << " left with no history entry";
        EXPECT_TRUE(canRestore(found->second)) << path;
    }
    std::vector<HistoryEntry> all;
    for (const auto& [path, entry] : trashed) {
        all.push_back(entry);
    }
    const UndoReport report = undo(history, all);
    for (const UndoFailure& failure : report.failures) {
        ADD_FAILURE() << failure.entry.originalPath << ": " << failure.reason;
    }
    EXPECT_EQ(static_cast<size_t>(report.restored), gone);
    for (const std::string& path : everyPath) {
        EXPECT_EQ(test::readText(path), path);
    }
    // Everything came back, so the Trash holds nothing, and Dorvik's folder only its history.
    EXPECT_EQ(countIn(trashFiles), 0u);
    EXPECT_EQ(countIn(dataHome + "/Trash/info"), 0u);
    EXPECT_EQ(countIn(dataHome + "/Dorvik"), 2u); // history.json and its lock
    std::cout << runs << " runs killed, " << everyPath.size() << " items, " << gone << " trashed, "
              << report.restored << " restored\n";
}

} // namespace
} // namespace dorvik
