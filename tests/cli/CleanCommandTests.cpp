// dorvik-cli clean end to end: Quick Clean's rules in a home of the test's own.

#include "catalogue/JunkCatalogue.h"
#include "cli/CliRun.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace dorvik {
namespace {

namespace fs = std::filesystem;
using test::cli;
using test::CliRun;

class CleanCommandTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override {
        test::writeFile(home + "/Library/Caches/com.example/blob", 300000);
        test::writeFile(home + "/Library/Caches/CloudKit/keep", 1000);
        test::writeFile(home + "/.Trash/Old Report.pdf", 40000);
        test::writeFile(home + "/Downloads/Setup.dmg", 120000);
        test::setModificationTime(home + "/Downloads/Setup.dmg", 1'600'000'000);
    }

    static CliRun run(const std::string& words) { return test::cliUnattended(words); }
};

TEST_F(CleanCommandTest, ADryRunShowsWhatQuickCleanWouldTake) {
    const CliRun dry = run("clean --dry-run");
    EXPECT_EQ(dry.status, 0) << dry.out;
    EXPECT_NE(dry.out.find("App caches: "), std::string::npos) << dry.out;
    EXPECT_NE(dry.out.find("Trash: "), std::string::npos) << dry.out;
    EXPECT_NE(dry.out.find("(Deleted immediately)\n"), std::string::npos) << dry.out;
    EXPECT_EQ(dry.out.find("Installers"), std::string::npos) << dry.out; // not ticked at first
    EXPECT_NE(dry.out.find(" ready to clean\n"), std::string::npos) << dry.out;
    EXPECT_TRUE(test::entryExists(home + "/Library/Caches/com.example/blob"));
    EXPECT_TRUE(test::entryExists(home + "/.Trash/Old Report.pdf"));

    const CliRun unasked = run("clean");
    EXPECT_EQ(unasked.status, 2);
    EXPECT_TRUE(test::entryExists(home + "/.Trash/Old Report.pdf"));
}

TEST_F(CleanCommandTest, TheTickedRulesGoTheirOwnWay) {
    const CliRun done = run("clean --yes");
    EXPECT_EQ(done.status, 0) << done.out;
    EXPECT_NE(done.out.find(" freed\n"), std::string::npos) << done.out;
    EXPECT_FALSE(test::entryExists(home + "/Library/Caches/com.example"));
    EXPECT_FALSE(test::entryExists(home + "/.Trash/Old Report.pdf"));
    // The rules' folders stay, and so does what no rule may take.
    EXPECT_TRUE(test::entryExists(home + "/Library/Caches/CloudKit/keep"));
    EXPECT_TRUE(test::entryExists(home + "/.Trash"));
    EXPECT_TRUE(test::entryExists(home + "/Downloads/Setup.dmg"));
    const nlohmann::json entries = nlohmann::json::parse(cli("history --json").out)["entries"];
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0]["method"], "Deleted");

    // A rule named on the command line, even one Quick Clean leaves unticked.
    const CliRun installers = run("clean --rule old-installers --yes");
    EXPECT_EQ(installers.status, 0) << installers.out;
    EXPECT_NE(installers.out.find("Installers in Downloads: "), std::string::npos);
    EXPECT_NE(installers.out.find(" moved to the Trash\n"), std::string::npos) << installers.out;
    EXPECT_TRUE(test::entryExists(dataHome + "/Trash/files/Setup.dmg"));
    EXPECT_NE(installers.out.find("Undo with: dorvik-cli undo "), std::string::npos);

    // What went to the desktop's Trash is Trash now, which Quick Clean empties as it empties the
    // Mac's: the item and its Trash information both go.
    const CliRun trash = run("clean --yes");
    EXPECT_EQ(trash.status, 0) << trash.out;
    EXPECT_NE(trash.out.find("Trash: "), std::string::npos) << trash.out;
    EXPECT_FALSE(test::entryExists(dataHome + "/Trash/files/Setup.dmg"));
    EXPECT_FALSE(test::entryExists(dataHome + "/Trash/info/Setup.dmg.trashinfo"));
    EXPECT_TRUE(test::entryExists(dataHome + "/Trash/files"));

    const CliRun again = run("clean --yes");
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.out, "Nothing to clean.\n");
}

TEST_F(CleanCommandTest, UnknownRulesAreRefused) {
    const CliRun bad = run("clean --rule no-such-rule --yes");
    EXPECT_EQ(bad.status, 2);
    EXPECT_NE(bad.out.find("no junk rule has the id \"no-such-rule\""), std::string::npos);
    // The message names the ids there are, the first and the last of the catalogue among them.
    EXPECT_NE(bad.out.find("(one of " + JunkCatalogue::rules().front().id + ", "),
              std::string::npos)
        << bad.out;
    EXPECT_NE(bad.out.find(", " + JunkCatalogue::rules().back().id + ")"), std::string::npos);
    EXPECT_NE(bad.out.find("usage: dorvik-cli clean"), std::string::npos);
    EXPECT_TRUE(test::entryExists(home + "/.Trash/Old Report.pdf"));
    EXPECT_EQ(run("clean --rule").status, 2);
}

} // namespace
} // namespace dorvik
