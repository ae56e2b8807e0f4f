// dorvik-cli remove, history and undo end to end, in a home and data folder of the test's own.

#include "base/TextForms.h"
#include "cli/CliRun.h"
#include "support/ScratchMount.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace dorvik {
namespace {

namespace fs = std::filesystem;
using test::cli;
using test::CliRun;
using test::shellQuoted;

class RemoveCommandTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override {
        test::writeFile(home + "/Downloads/movie.mkv", 200000);
        test::writeFile(home + "/Downloads/album/track.flac", 100000);
        test::writeFile(home + "/notes.txt", 3000);
        test::writeFile(home + "/Documents/thesis.tex", 1000);
    }

    static CliRun run(const std::string& words) { return test::cliUnattended(words); }
    std::string quoted(const std::string& relative) const {
        return shellQuoted(home + "/" + relative);
    }
    nlohmann::json history() const {
        return nlohmann::json::parse(cli("history --json").out)["entries"];
    }
};

TEST_F(RemoveCommandTest, WithoutATerminalNothingGoesUnasked) {
    const CliRun refused = run("remove " + quoted("Downloads/movie.mkv"));
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.out.find("add --yes"), std::string::npos) << refused.out;
    EXPECT_TRUE(test::entryExists(home + "/Downloads/movie.mkv"));
    EXPECT_FALSE(test::entryExists(dataHome + "/Dorvik/history.json"));
}

TEST_F(RemoveCommandTest, ThePlanByRiskThenTheToast) {
    const int64_t movie = test::allocatedBytes(home + "/Downloads/movie.mkv");
    const CliRun done =
        run("remove --yes " + quoted("Downloads/movie.mkv") + " " + quoted("notes.txt") + " " +
            quoted("Documents") + " " + quoted("Documents/thesis.tex"));
    EXPECT_EQ(done.status, 0) << done.out;
    const std::string& out = done.out;
    EXPECT_TRUE(out.starts_with("Delete Items\nThey'll go to the Trash")) << out;
    EXPECT_NE(out.find("\nSafe: 1 \u00B7 " + TextForms::size(movie) + "\n"), std::string::npos)
        << out;
    EXPECT_NE(out.find("~/Downloads/movie.mkv  (Download. Make sure you don\u2019t need it.)"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("\nReview: 1 \u00B7 "), std::string::npos) << out;
    EXPECT_NE(out.find("\nProtected: 1 \u00B7 "), std::string::npos) << out;
    EXPECT_EQ(out.find("thesis.tex"), std::string::npos) << out; // inside Documents
    EXPECT_NE(out.find("1 item(s) marked Review stay; add --include-review"), std::string::npos);
    EXPECT_NE(out.find("1 protected item(s) won\u2019t be touched.\n"), std::string::npos);
    EXPECT_NE(out.find("Total: " + TextForms::size(movie) + "\n"), std::string::npos) << out;
    EXPECT_NE(out.find("\n" + TextForms::size(movie) + " moved to the Trash\n"), std::string::npos)
        << out;
    EXPECT_NE(out.find("Undo with: dorvik-cli undo "), std::string::npos);

    EXPECT_FALSE(test::entryExists(home + "/Downloads/movie.mkv"));
    EXPECT_TRUE(test::entryExists(trashFiles + "/movie.mkv"));
    EXPECT_TRUE(test::entryExists(home + "/notes.txt"));
    EXPECT_TRUE(test::entryExists(home + "/Documents/thesis.tex"));
    const nlohmann::json entries = history();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0]["originalPath"], home + "/Downloads/movie.mkv");
    EXPECT_EQ(entries[0]["trashPath"], trashFiles + "/movie.mkv");
    EXPECT_EQ(entries[0]["size"], movie);
    EXPECT_EQ(entries[0]["method"], "Trash");
    EXPECT_EQ(entries[0]["restorable"], true);
    EXPECT_NE(out.find(entries[0]["id"].get<std::string>()), std::string::npos);
}

TEST_F(RemoveCommandTest, ReviewItemsAndPermanentRemovalOnRequest) {
    const CliRun done =
        run("remove --yes --include-review --permanent " + quoted("notes.txt") + " " +
            quoted("Downloads/album") + " " + quoted("Downloads/album/track.flac"));
    EXPECT_EQ(done.status, 0) << done.out;
    EXPECT_NE(done.out.find("These will be deleted permanently."), std::string::npos);
    EXPECT_NE(done.out.find(" freed\n"), std::string::npos) << done.out;
    EXPECT_EQ(done.out.find("Undo with"), std::string::npos);
    EXPECT_FALSE(test::entryExists(home + "/notes.txt"));
    EXPECT_FALSE(test::entryExists(home + "/Downloads/album"));
    EXPECT_FALSE(test::entryExists(trashFiles));
    const nlohmann::json entries = history();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0]["method"], "Deleted");
    EXPECT_TRUE(entries[0]["trashPath"].is_null());
}

TEST_F(RemoveCommandTest, RefusalsAndBadWords) {
    const struct {
        std::string words;
        int status;
        std::string message;
    } cases[] = {
        {"remove --yes " + quoted("Documents"), 1, "Nothing to delete.\n"},
        {"remove --yes " + quoted("notes.txt"), 1, "Nothing to delete.\n"},
        {"remove --yes " + quoted("never-was"), 2, "nothing at " + home + "/never-was"},
        {"remove --yes", 2, "no path given"},
        {"remove --force " + quoted("notes.txt"), 2, "unknown option --force"},
    };
    for (const auto& c : cases) {
        const CliRun done = run(c.words);
        EXPECT_EQ(done.status, c.status) << c.words << "\n" << done.out;
        EXPECT_NE(done.out.find(c.message), std::string::npos) << c.words << "\n" << done.out;
    }
    EXPECT_TRUE(test::entryExists(home + "/notes.txt"));
    EXPECT_TRUE(test::entryExists(home + "/Documents"));
}

// The paths given are those the system would act on: ".." after a link goes up from the link's
// target, and one item named twice is one item.
TEST_F(RemoveCommandTest, PathsAreResolvedAsTheSystemResolvesThem) {
    test::writeText(dir / "work/real/deep/old.txt", "deep");
    test::writeText(dir / "work/old.txt", "shallow");
    test::makeFolder(dir / "work/real/deep/dir");
    test::makeSymlink(dir / "work/real/deep/dir", dir / "work/lnk");
    const std::string viaLink = shellQuoted(dir / "work/lnk/../old.txt");
    const CliRun done = run("remove --yes --include-review --permanent " + viaLink + " " + viaLink +
                            " " + shellQuoted(dir / "work/real/deep/old.txt"));
    EXPECT_EQ(done.status, 0) << done.out;
    EXPECT_EQ(test::readText(dir / "work/old.txt"), "shallow");
    EXPECT_FALSE(test::entryExists(dir / "work/real/deep/old.txt"));
    EXPECT_NE(done.out.find("\nReview: 1 \u00B7 "), std::string::npos) << done.out;
    EXPECT_NE(done.out.find(dir / "work/real/deep/old.txt  ("), std::string::npos) << done.out;
    EXPECT_EQ(history().size(), 1u);
}

// The terminal lists what was refused right there; the history keeps no failures to look up.
TEST_F(RemoveCommandTest, RefusalsAreListedWhereTheyAreTold) {
    test::writeText(home + "/Downloads/source/keep.txt", "kept");
    test::ScratchMount bound(home + "/Downloads/bound",
                             test::ScratchMount::BindOf{home + "/Downloads/source"});
    if (!bound.mounted()) {
        GTEST_SKIP() << bound.whyNot();
    }
    const CliRun done = run("remove --yes --permanent " + quoted("Downloads/bound") + " " +
                            quoted("Downloads/movie.mkv"));
    EXPECT_EQ(done.status, 1) << done.out;
    EXPECT_NE(done.out.find("1 item(s) couldn't be deleted:\n  ~/Downloads/bound: Another disk "
                            "or folder is mounted here. It was left alone.\n"),
              std::string::npos)
        << done.out;
    EXPECT_EQ(done.out.find("Details in History"), std::string::npos) << done.out;
    EXPECT_EQ(test::readText(home + "/Downloads/source/keep.txt"), "kept");
}

TEST_F(RemoveCommandTest, OnATerminalTheUserIsAsked) {
    const CliRun declined = test::cliOnTerminal("remove " + quoted("Downloads/movie.mkv"), "n");
    EXPECT_EQ(declined.status, 1) << declined.out;
    EXPECT_NE(declined.out.find("Delete 1 item(s)? [y/N] "), std::string::npos) << declined.out;
    EXPECT_NE(declined.out.find("Nothing was deleted."), std::string::npos) << declined.out;
    EXPECT_TRUE(test::entryExists(home + "/Downloads/movie.mkv"));

    const CliRun accepted =
        test::cliOnTerminal("remove --permanent " + quoted("Downloads/movie.mkv"), "y");
    EXPECT_EQ(accepted.status, 0) << accepted.out;
    EXPECT_NE(accepted.out.find("Delete 1 item(s) permanently? [y/N] "), std::string::npos);
    EXPECT_FALSE(test::entryExists(home + "/Downloads/movie.mkv"));
}

TEST_F(RemoveCommandTest, ANameThatIsNotUtf8ComesBack) {
    const std::string name = home + "/Downloads/caf\xe9 \xff.txt";
    test::writeText(name, "bytes");
    ASSERT_EQ(run("remove --yes " + shellQuoted(name)).status, 0);
    const CliRun back = run("undo --last");
    EXPECT_EQ(back.status, 0) << back.out;
    EXPECT_EQ(test::readText(name), "bytes");
}

TEST_F(RemoveCommandTest, HistoryAndUndo) {
    EXPECT_EQ(run("history").out, "Nothing deleted yet.\n");
    ASSERT_EQ(run("remove --yes " + quoted("Downloads/movie.mkv")).status, 0);
    ASSERT_EQ(run("remove --yes " + quoted("Downloads/album")).status, 0);
    const nlohmann::json entries = history();
    ASSERT_EQ(entries.size(), 2u);
    const std::string movieID = entries[1]["id"];

    const CliRun text = run("history");
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("Trash"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("~/Downloads/album  " + entries[0]["id"].get<std::string>() +
                            "  (can be restored)\n"),
              std::string::npos)
        << text.out;
    EXPECT_LT(text.out.find("album"), text.out.find("movie.mkv")); // newest first

    const CliRun last = run("undo --last");
    EXPECT_EQ(last.status, 0) << last.out;
    EXPECT_EQ(last.out, "1 item(s) restored\nScan again to see updated sizes.\n");
    EXPECT_TRUE(test::entryExists(home + "/Downloads/album/track.flac"));
    EXPECT_EQ(history()[0]["method"], "Restored");

    // A new file at the movie's place: undo leaves both where they are.
    test::writeText(home + "/Downloads/movie.mkv", "another movie");
    const CliRun blocked = run("undo " + movieID);
    EXPECT_EQ(blocked.status, 1);
    EXPECT_EQ(blocked.out, "0 item(s) restored\nScan again to see updated sizes.\n"
                           "  ~/Downloads/movie.mkv: Something else is at its original place.\n");
    EXPECT_EQ(test::readText(home + "/Downloads/movie.mkv"), "another movie");
    EXPECT_TRUE(test::entryExists(trashFiles + "/movie.mkv"));
    fs::remove(home + "/Downloads/movie.mkv");
    EXPECT_EQ(run("undo " + movieID).status, 0);
    EXPECT_EQ(fs::file_size(home + "/Downloads/movie.mkv"), 200000u);

    const struct {
        std::string words;
        std::string message;
    } bad[] = {
        {"undo", "give either --last or the ids"},
        {"undo --last " + movieID, "give either --last or the ids"},
        {"undo nonsense", "\"nonsense\" is no entry id"},
        {"undo 00000000-0000-4000-8000-000000000000", "no entry"},
        {"history --all", "unknown word --all"},
    };
    for (const auto& c : bad) {
        const CliRun done = run(c.words);
        EXPECT_EQ(done.status, 2) << c.words;
        EXPECT_NE(done.out.find(c.message), std::string::npos) << c.words << "\n" << done.out;
    }
}

} // namespace
} // namespace dorvik
