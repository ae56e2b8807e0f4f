// dorvik-cli apps and uninstall over bundles made in a home and a system root of the test's own:
// the inventory as JSON, the plan asked for on the terminal and carried out to the Trash with
// history, and the refusals of Apple and running applications.

#include "base/TextForms.h"
#include "cli/CliRun.h"
#include "support/Bundles.h"
#include "support/ChildProcess.h"
#include "support/Environment.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace dorvik {
namespace {

using test::cli;
using test::CliRun;
using test::shellQuoted;

class AppsCommandTest : public testing::Test, protected test::TestHome {
protected:
    test::TempDir system;
    test::ScopedEnvironment systemRoot{"DORVIK_SYSTEM_ROOT", system.path()};
    // Whether an app runs is asked of the whole machine, where other tests run apps too.
    std::string writerID = test::identifierOfThisTest("com.example.writer");
    std::string writer = home + "/Applications/Writer.app";
    std::string notes = system / "Applications/Notes.app";
    std::string support = home + "/Library/Application Support/" + writerID;

    void SetUp() override {
        test::writeInfoPlist(writer, {{"CFBundleIdentifier", writerID},
                                      {"CFBundleName", "Writer"},
                                      {"CFBundleShortVersionString", "2.1"},
                                      {"CFBundleExecutable", "writer"}});
        test::writeAllocatedFile(writer + "/Contents/MacOS/writer", 800000);
        test::writeAllocatedFile(support + "/db", 300000);
        test::writeInfoPlist(notes, {{"CFBundleIdentifier", "com.apple.Notes"}},
                             test::PlistFormat::binary);
    }

    nlohmann::json history() const {
        return nlohmann::json::parse(cli("history --json").out)["entries"];
    }
};

TEST_F(AppsCommandTest, TheInventoryWithSizesAndRelatedItems) {
    const CliRun run = cli("apps --json");
    ASSERT_EQ(run.status, 0) << run.out;
    const nlohmann::json apps = nlohmann::json::parse(run.out)["apps"];
    ASSERT_EQ(apps.size(), 2u);
    const nlohmann::json& first = apps[0];
    EXPECT_EQ(first["path"], writer);
    EXPECT_EQ(first["name"], "Writer");
    EXPECT_EQ(first["bundleID"], writerID);
    EXPECT_EQ(first["version"], "2.1");
    EXPECT_EQ(first["isApple"], false);
    EXPECT_EQ(first["isRunning"], false);
    ASSERT_EQ(first["related"].size(), 1u);
    EXPECT_EQ(first["related"][0]["path"], support);
    EXPECT_EQ(first["related"][0]["label"], "Application Support");
    EXPECT_GE(first["related"][0]["size"].get<int64_t>(), test::allocatedBytes(support + "/db"));
    EXPECT_EQ(first["totalSize"],
              first["appSize"].get<int64_t>() + first["related"][0]["size"].get<int64_t>());
    EXPECT_TRUE(first["lastUsed"].is_number());
    EXPECT_EQ(apps[1]["path"], notes);
    EXPECT_EQ(apps[1]["isApple"], true);
    EXPECT_TRUE(apps[1]["version"].is_null());
    EXPECT_TRUE(apps[1]["lastUsed"].is_null());

    const CliRun text = cli("apps");
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("Writer 2.1\n"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("Notes  [Apple]\n"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("Last used Never / unknown"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("Application Support  ~/Library/Application Support/" + writerID),
              std::string::npos)
        << text.out;
}

TEST_F(AppsCommandTest, AnUninstallAskedOnTheTerminalGoesToTheTrash) {
    const CliRun unattended = test::cliUnattended("uninstall " + shellQuoted(writer));
    EXPECT_EQ(unattended.status, 2) << unattended.out;
    EXPECT_NE(unattended.out.find("add --yes"), std::string::npos) << unattended.out;
    EXPECT_TRUE(test::entryExists(writer));

    const CliRun declined = test::cliOnTerminal("uninstall " + shellQuoted(writer), "n\n");
    EXPECT_EQ(declined.status, 1) << declined.out;
    EXPECT_NE(declined.out.find("Uninstall Writer\r\n"), std::string::npos) << declined.out;
    EXPECT_NE(declined.out.find("Move 2 item(s) to the Trash? [y/N] "), std::string::npos)
        << declined.out;
    EXPECT_TRUE(test::entryExists(writer));
    EXPECT_TRUE(test::entryExists(support));

    const CliRun done = test::cliOnTerminal("uninstall " + shellQuoted(writer), "y\n");
    EXPECT_EQ(done.status, 0) << done.out;
    EXPECT_NE(done.out.find("Undo with: dorvik-cli undo "), std::string::npos) << done.out;
    EXPECT_FALSE(test::entryExists(writer));
    EXPECT_FALSE(test::entryExists(support));
    EXPECT_TRUE(test::entryExists(trashFiles + "/Writer.app/Contents/MacOS/writer"));
    EXPECT_TRUE(test::entryExists(trashFiles + "/" + writerID + "/db"));
    const nlohmann::json entries = history();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0]["originalPath"], writer);
    EXPECT_EQ(entries[0]["method"], "Trash");
    EXPECT_EQ(entries[1]["originalPath"], support);

    // The command the run printed brings the whole uninstall back.
    const size_t undo = done.out.find("Undo with: dorvik-cli ");
    ASSERT_NE(undo, std::string::npos);
    const size_t start = undo + std::string("Undo with: dorvik-cli ").size();
    const std::string words = done.out.substr(start, done.out.find('\r', start) - start);
    EXPECT_EQ(cli(words).status, 0) << words;
    EXPECT_TRUE(test::entryExists(writer + "/Contents/MacOS/writer"));
    EXPECT_TRUE(test::entryExists(support + "/db"));
}

TEST_F(AppsCommandTest, AFlatpakAppIsListedAndItsUninstallSaysThereIsNoWayBack) {
    // Laid out as Flatpak deploys an app; declining leaves everything, and no test runs Flatpak.
    const std::string app = dataHome + "/flatpak/app/org.example.Tool";
    test::writeText(app + "/x86_64/stable/1a2b/metadata", "[Application]\nname=org.example.Tool\n");
    test::writeAllocatedFile(app + "/x86_64/stable/1a2b/files/program", 500000);
    test::makeSymlink("1a2b", app + "/x86_64/stable/active");
    test::makeSymlink("x86_64/stable", app + "/current");
    test::writeAllocatedFile(home + "/.var/app/org.example.Tool/data/db", 100000);

    const nlohmann::json listed = nlohmann::json::parse(cli("apps --json").out);
    const auto tool = std::ranges::find(listed["apps"], nlohmann::json(app),
                                        [](const nlohmann::json& one) { return one["path"]; });
    ASSERT_NE(tool, listed["apps"].end()) << listed.dump();
    EXPECT_EQ((*tool)["bundleID"], "org.example.Tool");

    const CliRun declined = test::cliOnTerminal("uninstall " + shellQuoted(app), "n\n");
    EXPECT_EQ(declined.status, 1) << declined.out;
    EXPECT_NE(declined.out.find("it can\u2019t be put back from the Trash or from History"),
              std::string::npos)
        << declined.out;
    EXPECT_NE(declined.out.find("Uninstall the app and move its data to the Trash? [y/N] "),
              std::string::npos)
        << declined.out;
    EXPECT_TRUE(test::entryExists(app + "/current"));
    EXPECT_TRUE(test::entryExists(home + "/.var/app/org.example.Tool/data/db"));
}

TEST_F(AppsCommandTest, RefusalsAndBadWords) {
    const std::string executable = test::installExecutable(writer, "/bin/sleep", "writer");
    test::ChildProcess running(executable, {"30"});
    const struct {
        std::string words;
        int status;
        std::string message;
    } cases[] = {
        {"uninstall --yes " + shellQuoted(writer), 1, "Quit the app to uninstall it.\n"},
        {"uninstall --yes " + shellQuoted(notes), 1,
         "Apple app: Dorvik doesn\u2019t uninstall it.\n"},
        {"uninstall --yes " + shellQuoted(support), 2,
         "no application bundle or Flatpak app at " + support},
        {"uninstall --yes " + shellQuoted(home + "/Applications/Gone.app"), 2,
         "no application bundle or Flatpak app at"},
        {"uninstall --yes", 2, "no application given"},
        {"uninstall --force " + shellQuoted(writer), 2, "unexpected --force"},
        {"apps --yes", 2, "usage: dorvik-cli apps [--json]"},
    };
    for (const auto& c : cases) {
        const CliRun run = test::cliUnattended(c.words);
        EXPECT_EQ(run.status, c.status) << c.words << "\n" << run.out;
        EXPECT_NE(run.out.find(c.message), std::string::npos) << c.words << "\n" << run.out;
    }
    EXPECT_TRUE(test::entryExists(writer));
    EXPECT_TRUE(test::entryExists(notes));
    EXPECT_TRUE(test::entryExists(support));
    EXPECT_NE(cli("apps").out.find("Writer 2.1  [Running]\n"), std::string::npos);
}

} // namespace
} // namespace dorvik
