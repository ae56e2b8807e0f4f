// dorvik-cli remove killed with SIGKILL at random moments of its batch, again and again: every
// item that left its place can be undone afterwards, and nothing of Dorvik's is left lying
// about (no temporary file, no journal, no .trashinfo without its item). The kills fall anywhere
// in the time a whole batch takes on this machine. DORVIK_KILL_RUNS sets
// the number of runs (100 for the full loop; fewer by default to keep the suite quick).

#include "cli/CliRun.h"
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

// Files for one batch, their paths as dorvik-cli's arguments after `words`.
std::vector<std::string> batch(const std::string& folder, int items,
                               std::vector<std::string> words) {
    for (int item = 0; item < items; ++item) {
        const std::string path = folder + "/item" + std::to_string(item) + ".bin";
        test::writeText(path, path);
        words.push_back(path);
    }
    return words;
}

size_t strayFilesIn(const std::string& folder) {
    if (!fs::exists(folder)) {
        return 0;
    }
    size_t strays = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        strays +=
            name.find(".tmp-") != std::string::npos || name.find(".journal-") != std::string::npos;
    }
    return strays;
}

TEST_F(KilledRemovalTest, EveryTrashedItemStaysUndoableAndNothingStrayIsLeft) {
    constexpr int itemsPerRun = 40;
    const std::vector<std::string> words = {"remove", "--yes", "--include-review"};
    // One whole batch first: the kills fall anywhere within the time it takes.
    const auto started = std::chrono::steady_clock::now();
    const auto whole = batch(home + "/Downloads/whole", itemsPerRun, words);
    std::string wholeBatchWords;
    for (const std::string& word : whole) {
        wholeBatchWords += test::shellQuoted(word) + " ";
    }
    ASSERT_EQ(test::cliUnattended(wholeBatchWords).status, 0);
    const auto wholeBatch = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - started);
    ASSERT_EQ(countIn(home + "/Downloads/whole"), 0u);

    const int runs = runCount();
    std::mt19937 random(20261123);
    std::vector<std::string> everyPath(whole.begin() + 3, whole.end());
    for (int run = 0; run < runs; ++run) {
        const auto arguments =
            batch(home + "/Downloads/run" + std::to_string(run), itemsPerRun, words);
        everyPath.insert(everyPath.end(), arguments.begin() + 3, arguments.end());
        test::ChildProcess remove(DORVIK_CLI, arguments);
        std::this_thread::sleep_for(std::chrono::microseconds(
            std::uniform_int_distribution<int64_t>(0, wholeBatch.count())(random)));
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
    EXPECT_EQ(strayFilesIn(dataHome + "/Dorvik"), 0u);
    std::cout << "a whole batch took " << wholeBatch.count() / 1000 << " ms; " << runs
              << " runs killed, " << everyPath.size() << " items, " << gone << " trashed, "
              << report.restored << " restored\n";
}

} // namespace
} // namespace dorvik
