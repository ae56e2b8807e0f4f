// dorvik-cli leftovers on a Mac-like home and application folders made in a temporary folder.

#include "cli/CliRun.h"
#include "cli/LeftoversReport.h"
#include "platform/JsonCoding.h"
#include "support/Bundles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

class LeftoversCommandTest : public ::testing::Test {
protected:
    test::TempDir dir;
    std::string home = dir / "Users/me";
    std::string system = dir / "root";
    std::string environment =
        "HOME=" + shellQuoted(home) + " DORVIK_SYSTEM_ROOT=" + shellQuoted(system);

    void SetUp() override {
        test::writeFile(home + "/Library/Application Support/com.example.gone/data", 500'000);
        test::writeFile(home + "/Library/Caches/com.example.writer/blob", 300'000);
        test::writeInfoPlist(system + "/Applications/Writer.app",
                             {{"CFBundleIdentifier", "com.example.writer"}});
    }
};

// The search's first test compares the locations' short labels with folder paths, so the command
// finds nothing, even data no installed application claims.
TEST_F(LeftoversCommandTest, FindsNothingAsTheLocationsAreLabelled) {
    const test::CliRun json = cli("leftovers --json", false, environment);
    ASSERT_EQ(json.status, 0) << json.out;
    EXPECT_EQ(nlohmann::json::parse(json.out),
              (nlohmann::json{{"leftovers", nlohmann::json::array()}}));
    const test::CliRun text = cli("leftovers", false, environment);
    ASSERT_EQ(text.status, 0);
    EXPECT_EQ(text.out, "No leftovers found.\n");
    EXPECT_EQ(cli("leftovers --all", false, environment).status, 2);
}

TEST(LeftoversReport, RowsAndJsonCarryEveryField) {
    const std::vector<Leftover> leftovers = {
        {"/home/me/Library/Caches/com.example.gone", "com.example.gone", "Library/Caches",
         2'000'000, 1'600'000'000.0},
        {"/home/me/Library/Logs/org.bad\xff.tool", "org.bad\xff.tool", "Library/Logs", 70'000, {}},
    };
    const nlohmann::json document = cli::leftoversJson(leftovers);
    ASSERT_EQ(document.at("leftovers").size(), 2u);
    const nlohmann::json& first = document["leftovers"][0];
    EXPECT_EQ(first["path"], "/home/me/Library/Caches/com.example.gone");
    EXPECT_EQ(first["identifier"], "com.example.gone");
    EXPECT_EQ(first["location"], "Library/Caches");
    EXPECT_EQ(first["size"], 2'000'000);
    EXPECT_EQ(first["modified"], 1'600'000'000.0);
    const nlohmann::json& second = document["leftovers"][1];
    EXPECT_TRUE(second["modified"].is_null());
    // A name that is no UTF-8 reads back to its bytes.
    EXPECT_EQ(platform::JsonCoding::unescapedPath(second["path"].get<std::string>()),
              "/home/me/Library/Logs/org.bad\xff.tool");

    std::ostringstream out;
    cli::printLeftovers(out, leftovers);
    const std::string text = out.str();
    EXPECT_NE(text.find("2 MB"), std::string::npos) << text;
    EXPECT_NE(text.find("com.example.gone (Library/Caches)"), std::string::npos) << text;
    EXPECT_NE(text.find("$'\\377'"), std::string::npos) << text;
    EXPECT_NE(text.find("Total: 2.1 MB, 2 items"), std::string::npos) << text;
}

} // namespace
} // namespace dorvik
