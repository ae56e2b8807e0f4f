// dorvik-cli overview: the Overview of a scan or of an archive from a terminal, with the junk of
// the home folder in HOME.

#include "cli/CliRun.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

class OverviewCommandTest : public ::testing::Test {
protected:
    test::TempDir dir;
    std::string home = dir / "home";
    std::string environment =
        "HOME=" + shellQuoted(home) + " XDG_DATA_HOME=" + shellQuoted(dir / "data");
    std::string trip = home + "/Videos/trip";
    std::string installer = home + "/Downloads/Tool.dmg";

    void SetUp() override {
        test::writeAllocatedFile(home + "/.Trash/old.bin", 60'000'000);
        test::writeAllocatedFile(installer, 3'000'000);
        test::setModificationTime(installer, 1'600'000'000);
        test::writeAllocatedFile(trip + "/raw.mov", 210'000'000); // over 200 MiB, at depth 2
    }
};

TEST_F(OverviewCommandTest, JsonHoldsTheCompositionTheRecommendationsAndTheLargestFolders) {
    const test::CliRun run = cli("overview " + shellQuoted(home) + " --json", false, environment);
    ASSERT_EQ(run.status, 0) << run.out;
    const nlohmann::json document = nlohmann::json::parse(run.out);

    const nlohmann::json& rows = document.at("recommendations");
    ASSERT_EQ(rows.size(), 2u) << rows.dump(2);
    EXPECT_EQ(rows[0], (nlohmann::json{{"id", "trash"},
                                       {"title", "Empty the Trash"},
                                       {"detail", "Whatever is in the Trash still takes up space."},
                                       {"size", test::allocatedBytes(home + "/.Trash/old.bin")}}));
    EXPECT_EQ(rows[1]["id"], "installers");
    EXPECT_EQ(rows[1]["detail"], "1 .dmg/.pkg files in Downloads older than a week.");
    EXPECT_EQ(rows[1]["size"], test::allocatedBytes(installer));

    const nlohmann::json& folders = document.at("largestFolders");
    ASSERT_EQ(folders.size(), 1u) << folders.dump(2);
    EXPECT_EQ(folders[0]["path"], trip);
    EXPECT_EQ(folders[0]["size"],
              test::allocatedBytes(trip) + test::allocatedBytes(trip + "/raw.mov"));

    // The buckets largest first; what the volume uses beyond them, if anything, comes last.
    const nlohmann::json& composition = document.at("composition");
    int64_t sum = 0;
    int64_t previous = INT64_MAX;
    for (const nlohmann::json& segment : composition.at("segments")) {
        sum += segment.at("size").get<int64_t>();
        if (!segment.at("bucket").is_null()) {
            EXPECT_LE(segment.at("size").get<int64_t>(), previous);
            previous = segment.at("size").get<int64_t>();
        } else {
            EXPECT_EQ(segment.at("name"), "System and other");
            EXPECT_EQ(&segment, &composition.at("segments").back());
        }
    }
    EXPECT_EQ(sum, composition.at("total").get<int64_t>());
    EXPECT_EQ(composition.at("segments")[0].at("bucket"), "video");

    // The same from the archive of that scan.
    const std::string archive = dir / "home.dvscan";
    ASSERT_EQ(
        cli("scan " + shellQuoted(home) + " --save " + shellQuoted(archive), false, environment)
            .status,
        0);
    const test::CliRun loaded =
        cli("overview --load " + shellQuoted(archive) + " --json", false, environment);
    ASSERT_EQ(loaded.status, 0) << loaded.out;
    EXPECT_EQ(nlohmann::json::parse(loaded.out).at("recommendations"), rows);
    EXPECT_EQ(nlohmann::json::parse(loaded.out).at("largestFolders"), folders);
}

TEST_F(OverviewCommandTest, TextShowsEachPartAndSaysWhenThereIsNothingToDo) {
    const test::CliRun run = cli("overview " + shellQuoted(home), false, environment);
    ASSERT_EQ(run.status, 0) << run.out;
    const auto at = [&](const std::string& text) { return run.out.find(text); };
    EXPECT_NE(at("Recommendations\n       60 MB  Empty the Trash\n"
                 "              Whatever is in the Trash still takes up space.\n"),
              std::string::npos)
        << run.out;
    EXPECT_NE(at("Largest folders\n      210 MB  ~/Videos/trip\n"), std::string::npos) << run.out;
    EXPECT_LT(at("Where your space goes"), at("Recommendations"));

    test::makeFolder(dir / "empty");
    const test::CliRun empty =
        cli("overview " + shellQuoted(dir / "empty"), false,
            "HOME=" + shellQuoted(dir / "nobody") + " XDG_DATA_HOME=" + shellQuoted(dir / "data"));
    ASSERT_EQ(empty.status, 0);
    EXPECT_NE(empty.out.find("Recommendations\n  Nothing urgent. Nice work!\n"), std::string::npos)
        << empty.out;

    const test::CliRun wrong = cli("overview --frobnicate", true, environment);
    EXPECT_EQ(wrong.status, 2);
    EXPECT_NE(wrong.out.find("usage: dorvik-cli overview [PATH | --load FILE] [--json]"),
              std::string::npos);
}

} // namespace
} // namespace dorvik
