// dorvik-cli scan as a script sees it: exit statuses, messages and the JSON document.

#include "CliRun.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace dorvik {
namespace {

using test::cli;
using test::CliRun;

TEST(ScanCommand, BadInputExitsWithStatusTwoAndSaysWhy) {
    test::TempDir dir;
    test::writeFile(dir / "file.txt", 10);
    const struct {
        std::string words;
        std::string message;
    } cases[] = {
        {"scan '" + (dir / "missing") + "'", "no such folder"},
        {"scan '" + (dir / "file.txt") + "'", "not a folder"},
        {"scan --frobnicate", "unknown option --frobnicate"},
        {"scan --top", "--top needs a value"},
        {"scan --top -3 '" + dir.path() + "'", "--top takes a whole number"},
        {"scan --home --disk", "give one folder"},
        {"scan --exclude", "--exclude needs a value"},
        {"", "usage:"},
        {"frobnicate", "unknown command"},
    };
    for (const auto& [words, message] : cases) {
        const CliRun run = cli(words, true);
        EXPECT_EQ(run.status, 2) << words;
        EXPECT_NE(run.out.find(message), std::string::npos) << words << "\n" << run.out;
    }
}

TEST(ScanCommand, JsonDocumentOfATree) {
    test::TempDir dir;
    test::writeFile(dir / "videos/big.mov", 2 << 20);
    test::writeFile(dir / "videos/small.mov", 1000);
    test::writeFile(dir / "disk.dmg", 1 << 20);
    test::writeFile(dir / "skip/inside.bin", 3 << 20);
    test::makeHardLink(dir / "disk.dmg", dir / "videos/disk-again.dmg");

    const CliRun run =
        cli("scan --json --top 1 --exclude '" + (dir / "skip") + "' '" + dir.path() + "'");
    ASSERT_EQ(run.status, 0) << run.out;
    const auto json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json["rootPath"], dir.path());
    EXPECT_EQ(json["size"], test::allocatedBytes(dir.path()) +
                                test::allocatedBytes(dir / "videos") + (2 << 20) +
                                test::allocatedBytes(dir / "videos/small.mov") + (1 << 20));
    EXPECT_EQ(json["logicalSize"], (2 << 20) + 1000 + (1 << 20));
    EXPECT_EQ(json["totalFiles"], 3);
    EXPECT_EQ(json["totalDirectories"], 2);
    EXPECT_EQ(json["hardLinksSkipped"], 1);
    EXPECT_EQ(json["unreadableDirectories"], 0);
    EXPECT_TRUE(json["duration"].is_number());
    EXPECT_EQ(json["kindCounts"]["video"], 2);
    EXPECT_EQ(json["kindCounts"]["diskImage"], 1);
    EXPECT_EQ(json["kindTotals"]["diskImage"], 1 << 20);
    EXPECT_EQ(json["bucketTotals"]["archives"], 1 << 20);
    ASSERT_EQ(json["largestFiles"].size(), 1u);
    EXPECT_EQ(json["largestFiles"][0]["path"], dir / "videos/big.mov");
    EXPECT_EQ(json["largestFiles"][0]["size"], 2 << 20);
    ASSERT_EQ(json["largestFolders"].size(), 1u);
    EXPECT_EQ(json["largestFolders"][0]["path"], dir / "videos");
}

TEST(ScanCommand, TextReportNamesTheRootAndTheLargest) {
    test::TempDir dir;
    test::writeFile(dir / "photos/a.jpg", 3 << 20);
    const CliRun run = cli("scan '" + dir.path() + "/photos/..'");
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(run.out.rfind(dir.path() + "\n", 0), 0u) << run.out; // the normalised root
    EXPECT_NE(run.out.find("Images & Photos"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("3.1 MB"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find(dir / "photos/a.jpg"), std::string::npos) << run.out;
}

} // namespace
} // namespace dorvik
