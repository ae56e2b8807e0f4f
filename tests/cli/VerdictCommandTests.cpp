// dorvik-cli verdict as a script sees it: one line per path, in text or JSON.

#include "base/Wording.h"
#include "cli/CliRun.h"
#include "removal/SafetyRules.h"
#include "support/MacWords.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

TEST(VerdictCommand, OneLinePerPathInTextAndJson) {
    test::TempDir dir;
    const std::string home = dir / "Users/me";
    const std::string environment = "HOME=" + shellQuoted(home);
    const std::string paths = shellQuoted(home + "/Downloads/a.zip") + " " +
                              shellQuoted(home + "/Library/Caches/") + " " +
                              shellQuoted(home + "/Documents/../Library/Caches/x");

    // A reason that names a Mac is shown in the words of a Linux desktop.
    const std::string folderKept =
        Wording::shown("Folder used by macOS. Dorvik empties its contents but keeps the folder.");

    const test::CliRun text = cli("verdict " + paths, false, environment);
    ASSERT_EQ(text.status, 0);
    // Paths are made absolute and lose "..", "." and a trailing "/" before they are judged.
    EXPECT_EQ(text.out, "safe\tDownload. Make sure you don\u2019t need it.\t" + home +
                            "/Downloads/a.zip\n"
                            "protected\t" +
                            folderKept + "\t" + home +
                            "/Library/Caches\n"
                            "safe\tTemporary copies apps keep to run faster. They\u2019re rebuilt "
                            "automatically; some apps may take a little longer the first time.\t" +
                            home + "/Library/Caches/x\n");

    const test::CliRun json = cli("verdict --json " + paths, false, environment);
    ASSERT_EQ(json.status, 0);
    std::istringstream lines(json.out);
    std::vector<nlohmann::json> objects;
    for (std::string line; std::getline(lines, line);) {
        objects.push_back(nlohmann::json::parse(line));
    }
    ASSERT_EQ(objects.size(), 3u);
    EXPECT_EQ(objects[1], (nlohmann::json{
                              {"path", home + "/Library/Caches"},
                              {"risk", "protected"},
                              {"reason", folderKept},
                          }));
    EXPECT_EQ(objects[0]["risk"], "safe");
    EXPECT_EQ(objects[2]["path"], home + "/Library/Caches/x");
}

// Every reason of the tables, and those the ordered steps give, as the terminal shows them.
TEST(VerdictCommand, ReasonsNameNoMac) {
    test::TempDir dir;
    const std::string home = dir / "home";
    std::string paths = shellQuoted(home + "/Library/Caches") + " " +
                        shellQuoted(home + "/Library/Caches/x") + " " +
                        shellQuoted(home + "/Library/Accounts") + " " + shellQuoted("/etc/x");
    for (const auto& table :
         {SafetyRules::protectedSystemPaths(), SafetyRules::protectedLinuxSystemPaths()}) {
        for (const SafetyRules::ProtectedPath& row : table) {
            paths += " " + shellQuoted(std::string(row.path) + "/x");
        }
    }
    const test::CliRun run = cli("verdict " + paths, false, "HOME=" + shellQuoted(home));
    ASSERT_EQ(run.status, 0);
    std::istringstream lines(run.out);
    size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        // The reason stands between the risk and the path, which keeps its own name.
        const size_t start = line.find('\t') + 1;
        const std::string reason = line.substr(start, line.find('\t', start) - start);
        EXPECT_EQ(test::macWordsIn(reason), std::vector<std::string>{}) << line;
    }
    EXPECT_EQ(count, 4 + SafetyRules::protectedSystemPaths().size() +
                         SafetyRules::protectedLinuxSystemPaths().size());
    EXPECT_NE(run.out.find("protected\tSystem libraries.\t/usr/lib/x\n"), std::string::npos);
}

TEST(VerdictCommand, RelativePathsAndBadWords) {
    test::TempDir dir;
    const test::CliRun relative =
        cli("verdict notes.txt", false, "cd " + shellQuoted(dir.path()) + " && HOME=/nowhere");
    EXPECT_EQ(relative.status, 0);
    EXPECT_EQ(relative.out, "review\tReview before deleting.\t" + (dir / "notes.txt") + "\n");
    const struct {
        std::string words;
        std::string message;
    } cases[] = {
        {"verdict", "give at least one path"},
        {"verdict --json", "give at least one path"},
        {"verdict --frobnicate /tmp", "unknown option --frobnicate"},
        {"verdict ''", "an empty path"},
    };
    for (const auto& [words, message] : cases) {
        const test::CliRun run = cli(words, true);
        EXPECT_EQ(run.status, 2) << words;
        EXPECT_NE(run.out.find(message), std::string::npos) << words << "\n" << run.out;
    }
}

} // namespace
} // namespace dorvik
