// dorvik-cli junk as a script sees it: the findings of the home folder in HOME.

#include "cli/CliRun.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

class JunkCommandTest : public ::testing::Test {
protected:
    test::TempDir dir;
    std::string home = dir / "Users/me";
    std::string environment = "HOME=" + shellQuoted(home);

    void SetUp() override {
        test::writeFile(home + "/Library/Caches/com.example/blob", 300000);
        test::writeFile(home + "/.Trash/Old Report.pdf", 40000);
        test::writeFile(home + "/Downloads/Setup.DMG", 120000);
        test::setModificationTime(home + "/Downloads/Setup.DMG", 1'600'000'000);
        test::writeFile(home + "/Downloads/fresh.dmg", 500000);
    }
};

// The rule outside the home folder reads this machine's /Library/Logs; it is left out of the
// comparisons.
nlohmann::json homeFindings(const nlohmann::json& document) {
    nlohmann::json findings = nlohmann::json::array();
    for (const auto& finding : document.at("findings")) {
        if (finding.at("rule") != "system-logs") {
            findings.push_back(finding);
        }
    }
    return findings;
}

TEST_F(JunkCommandTest, JsonFindingsGroupedWithTheirItems) {
    const test::CliRun run = cli("junk --json", false, environment);
    ASSERT_EQ(run.status, 0) << run.out;
    const nlohmann::json findings = homeFindings(nlohmann::json::parse(run.out));
    ASSERT_EQ(findings.size(), 3u) << findings.dump(2);
    // by heading: system junk, then the Trash, then Downloads
    EXPECT_EQ(findings[0]["rule"], "user-caches");
    EXPECT_EQ(findings[1]["rule"], "trash");
    EXPECT_EQ(findings[2]["rule"], "old-installers");
    EXPECT_EQ(findings[2]["title"], "Installers in Downloads");
    EXPECT_EQ(findings[2]["risk"], "review");
    EXPECT_EQ(findings[2]["removal"], "trash");
    EXPECT_EQ(findings[0]["removal"], "permanent");
    ASSERT_EQ(findings[2]["items"].size(), 1u);
    EXPECT_EQ(findings[2]["items"][0],
              (nlohmann::json{
                  {"path", home + "/Downloads/Setup.DMG"},
                  {"size", test::allocatedBytes(home + "/Downloads/Setup.DMG")},
                  {"fileCount", 1},
                  {"modified", 1'600'000'000.0},
              }));
    const auto& cache = findings[0]["items"][0];
    EXPECT_EQ(cache["path"], home + "/Library/Caches/com.example");
    EXPECT_EQ(cache["size"], test::allocatedBytes(home + "/Library/Caches/com.example") +
                                 test::allocatedBytes(home + "/Library/Caches/com.example/blob"));
}

TEST_F(JunkCommandTest, TextUnderHeadingsWithSizes) {
    const test::CliRun run = cli("junk", false, environment);
    ASSERT_EQ(run.status, 0);
    const auto line = [&](const std::string& text) { return run.out.find(text); };
    EXPECT_NE(line("System Junk\n  App caches: "), std::string::npos) << run.out;
    EXPECT_NE(line("1 item (Safe, Deleted immediately)\n"), std::string::npos) << run.out;
    EXPECT_NE(line("  ~/Library/Caches/com.example\n"), std::string::npos) << run.out;
    EXPECT_NE(line("Downloads\n  Installers in Downloads: 123 KB, 1 item (Review, Moved to "
                   "Trash)\n"),
              std::string::npos)
        << run.out;
    EXPECT_EQ(line("fresh.dmg"), std::string::npos) << run.out;
    EXPECT_LT(line("System Junk"), line("Trash\n"));
    EXPECT_LT(line("Trash\n"), line("Downloads\n"));
    EXPECT_NE(line("\nTotal: "), std::string::npos) << run.out;
}

TEST(JunkCommand, AnEmptyHomeHasNoJunkAndBadWordsAreRefused) {
    test::TempDir dir;
    const test::CliRun json = cli("junk --json", false, "HOME=" + shellQuoted(dir / "nobody"));
    ASSERT_EQ(json.status, 0);
    EXPECT_TRUE(homeFindings(nlohmann::json::parse(json.out)).empty()) << json.out;
    const test::CliRun bad = cli("junk --frobnicate", true);
    EXPECT_EQ(bad.status, 2);
    EXPECT_NE(bad.out.find("usage: dorvik-cli junk [--json]"), std::string::npos) << bad.out;
}

} // namespace
} // namespace dorvik
