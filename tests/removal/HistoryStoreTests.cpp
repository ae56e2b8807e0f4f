// history.json as a file that several processes share: concurrent writers lose nothing, any
// path survives, a file that cannot be ours is refused before it is parsed, and the folder and
// files are private. Real processes (fork) on a data folder of the test's own.

#include "base/Dates.h"
#include "removal/DeletionHistory.h"
#include "removal/HistoryFile.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dorvik {
namespace {

namespace fs = std::filesystem;

HistoryEntry numbered(int process, int number) {
    char id[37];
    std::snprintf(id, sizeof id, "00000000-0000-4000-8000-%04d%08d", process, number);
    return HistoryEntry{id, Dates::now(), "/home/me/p" + std::to_string(process), std::nullopt,
                        1,  false};
}

unsigned permissionBits(const std::string& path) {
    struct stat st {};
    EXPECT_EQ(lstat(path.c_str(), &st), 0) << path;
    return st.st_mode & 07777;
}

class HistoryStoreTest : public testing::Test, protected test::TestHome {
protected:
    std::string file = dataHome + "/Dorvik/history.json";
};

TEST_F(HistoryStoreTest, TwoProcessesAddingAtOnceLoseNothing) {
    constexpr int perProcess = 100;
    // Each process keeps one history open, as the application and the command line do, and
    // records its entries one at a time.
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    const int process = child == 0 ? 1 : 2;
    {
        DeletionHistory history(file);
        for (int number = 0; number < perProcess; ++number) {
            history.record({numbered(process, number)});
        }
    }
    if (child == 0) {
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));

    std::set<std::string> ids;
    const DeletionHistory written(file);
    for (const HistoryEntry& entry : written.entries()) {
        ids.insert(entry.id);
    }
    int lost = 0;
    for (int writer = 1; writer <= 2; ++writer) {
        for (int number = 0; number < perProcess; ++number) {
            lost += ids.contains(numbered(writer, number).id) ? 0 : 1;
        }
    }
    EXPECT_EQ(lost, 0);
    EXPECT_EQ(ids.size(), size_t{2 * perProcess});
}

TEST_F(HistoryStoreTest, AWriterKeepsWhatAnotherProcessWroteAndItsRestoredMark) {
    DeletionHistory application(file);
    application.record({numbered(1, 1)});
    {
        DeletionHistory commandLine(file);
        commandLine.record({numbered(2, 1), numbered(2, 2)});
    }
    // The application's copy is older than the file: its next write merges, and it sees the
    // other entries afterwards.
    application.record({numbered(1, 2)});
    std::vector<std::string> ids;
    const DeletionHistory written(file);
    for (const HistoryEntry& entry : written.entries()) {
        ids.push_back(entry.id);
    }
    const std::vector<std::string> expected = {numbered(1, 2).id, numbered(2, 1).id,
                                               numbered(2, 2).id, numbered(1, 1).id};
    EXPECT_EQ(ids, expected);
    EXPECT_EQ(application.entries().size(), 4u);

    // A mark of "restored" made elsewhere stays, and clearing takes only what the clearer saw.
    {
        DeletionHistory other(file);
        auto entries = other.entries();
        entries[1].restored = true;
        test::writeText(file, HistoryFile::encode(entries));
    }
    application.record({numbered(1, 3)});
    EXPECT_TRUE(DeletionHistory(file).entries()[2].restored);
    DeletionHistory late(file);
    late.record({numbered(3, 1)});
    application.clear();
    ASSERT_EQ(DeletionHistory(file).entries().size(), 1u);
    EXPECT_EQ(DeletionHistory(file).entries()[0].id, numbered(3, 1).id);
}

TEST_F(HistoryStoreTest, AnyByteStringSurvivesAndTheOldFormStillReads) {
    HistoryEntry entry = numbered(1, 1);
    entry.originalPath = "/home/me/caf\xe9 \xff\xfe.txt";
    entry.trashPath = "/home/me/.local/share/Trash/files/caf\xe9 \xff\xfe.txt";
    const auto decoded = HistoryFile::decode(HistoryFile::encode({entry}));
    ASSERT_TRUE(decoded);
    ASSERT_EQ(decoded->size(), 1u);
    EXPECT_EQ((*decoded)[0].originalPath, entry.originalPath);
    EXPECT_EQ((*decoded)[0].trashPath, entry.trashPath);

    // Written before paths were escaped: plain UTF-8 text.
    const auto old = HistoryFile::decode(
        R"([{"id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f", "date": 10.5,
             "originalPath": "/home/me/Caf\u00e9.txt", "trashPath": "/t/Caf\u00e9.txt",
             "size": 7, "restored": false}])");
    ASSERT_TRUE(old);
    EXPECT_EQ((*old)[0].originalPath, "/home/me/Caf\xc3\xa9.txt");
    EXPECT_EQ((*old)[0].trashPath, "/t/Caf\xc3\xa9.txt");
}

TEST_F(HistoryStoreTest, AFileThatCannotBeOursIsRefusedWithoutWaitingOrParsing) {
    fs::create_directories(dataHome + "/Dorvik");
    // A FIFO would block an ordinary open until a writer came; the alarm fails the test instead
    // of hanging it.
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    alarm(10);
    EXPECT_TRUE(DeletionHistory(file).entries().empty());
    alarm(0);
    fs::remove(file);

    // More entries than the history ever keeps, and a file larger than the longest entries
    // could fill.
    std::vector<HistoryEntry> tooMany;
    for (int number = 0; number <= int(DeletionHistory::maximumEntries); ++number) {
        tooMany.push_back(numbered(1, number));
    }
    test::writeText(file, HistoryFile::encode(tooMany));
    EXPECT_TRUE(DeletionHistory(file).entries().empty());
    tooMany.pop_back();
    test::writeText(file, HistoryFile::encode(tooMany));
    EXPECT_EQ(DeletionHistory(file).entries().size(), DeletionHistory::maximumEntries);

    test::writeSparseFile(file, int64_t{400} << 20);
    EXPECT_TRUE(DeletionHistory(file).entries().empty());
}

TEST_F(HistoryStoreTest, TheFolderAndTheFilesArePrivate) {
    ::umask(022);
    DeletionHistory history(DeletionHistory::defaultPath());
    history.record({numbered(1, 1)});
    EXPECT_EQ(permissionBits(dataHome + "/Dorvik"), 0700u);
    for (const auto& entry : fs::directory_iterator(dataHome + "/Dorvik")) {
        EXPECT_EQ(permissionBits(entry.path()), 0600u) << entry.path();
    }
    // A folder made open by an older version is closed at the next write.
    chmod((dataHome + "/Dorvik").c_str(), 0755);
    chmod(file.c_str(), 0644);
    DeletionHistory(DeletionHistory::defaultPath()).record({numbered(1, 2)});
    EXPECT_EQ(permissionBits(dataHome + "/Dorvik"), 0700u);
    EXPECT_EQ(permissionBits(file), 0600u);
}

} // namespace
} // namespace dorvik
