// dorvik-cli scan --record and trends, end to end through the store in a temporary data folder.

#include "cli/CliRun.h"
#include "support/Environment.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace dorvik {
namespace {

using test::cli;
using test::CliRun;

constexpr int64_t gone = 300'000'000;

nlohmann::json readJson(const std::string& path) {
    std::ifstream in(path);
    return nlohmann::json::parse(in);
}

TEST(TrendsCommand, AnEmptyStoreIsStillLearning) {
    test::TempDir temp;
    test::ScopedEnvironment dataHome("XDG_DATA_HOME", temp / "data");
    const CliRun run = cli("trends --json");
    ASSERT_EQ(run.status, 0) << run.out;
    const auto json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json["samples"], 0);
    EXPECT_TRUE(json["forecast"].is_null());
    EXPECT_EQ(json["learning"]["days"], 0.0);
    EXPECT_TRUE(json["root"].is_null());
    EXPECT_EQ(json["snapshots"], 0);
    EXPECT_TRUE(json["changes"].is_null());
    EXPECT_EQ(json["message"].get<std::string>().rfind("Dorvik remembers each scan.", 0), 0u);

    EXPECT_EQ(cli("trends --frobnicate").status, 2);
    EXPECT_EQ(cli("trends --root").status, 2);
}

TEST(TrendsCommand, RecordedScansAreComparedNewestFirst) {
    test::TempDir temp;
    test::ScopedEnvironment dataHome("XDG_DATA_HOME", temp / "data");
    test::ScopedEnvironment zone("TZ", "UTC0"); // calendar days without daylight saving
    const std::string tree = temp / "tree";
    test::writeFile(tree + "/kept/data.bin", 17'000'000);

    CliRun run = cli("scan --json --record '" + tree + "'");
    ASSERT_EQ(run.status, 0) << run.out;
    const auto recorded = nlohmann::json::parse(run.out)["recorded"];
    EXPECT_EQ(recorded["directory"], temp / "data/Dorvik");
    EXPECT_EQ(recorded["root"], tree);
    EXPECT_EQ(recorded["snapshotsOfRoot"], 1);
    EXPECT_EQ(recorded["samples"], 1);

    run = cli("trends --json --root '" + tree + "/kept/..'");
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(nlohmann::json::parse(run.out)["message"],
              "First measurement saved today. Scan again another day and Dorvik will show "
              "exactly which folders grew.");

    // Make the first scan two days old and 300 MB bigger, with a folder that is gone since.
    const std::string scans = temp / "data/Dorvik/scans.json";
    auto snapshots = readJson(scans);
    auto& older = snapshots[0];
    older["date"] = older["date"].get<double>() - 2 * 86400;
    older["total"] = older["total"].get<int64_t>() + gone;
    older["folders"][tree] = older["folders"][tree].get<int64_t>() + gone;
    older["folders"][tree + "/old"] = gone;
    older["buckets"]["11"] = older["buckets"]["11"].get<int64_t>() + gone;
    std::ofstream(scans) << snapshots.dump();

    run = cli("scan --record '" + tree + "'");
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("Recorded for trends"), std::string::npos) << run.out;

    run = cli("trends --json"); // the latest scanned root
    ASSERT_EQ(run.status, 0) << run.out;
    const auto json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json["root"], tree);
    EXPECT_EQ(json["snapshots"], 2);
    const auto& changes = json["changes"];
    EXPECT_EQ(changes["since"], "Since 2 days ago");
    EXPECT_EQ(changes["totalChange"], -gone);
    ASSERT_EQ(changes["buckets"].size(), 1u);
    EXPECT_EQ(changes["buckets"][0]["bucket"], "other");
    EXPECT_EQ(changes["buckets"][0]["delta"], -gone);
    ASSERT_EQ(changes["folders"].size(), 1u);
    EXPECT_EQ(changes["folders"][0]["path"], tree + "/old");
    EXPECT_EQ(changes["folders"][0]["change"], -gone);
    EXPECT_EQ(changes["folders"][0]["badge"], "Removed");

    run = cli("trends");
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("Since 2 days ago"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\u2212300 MB"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find(tree + "/old  Removed"), std::string::npos) << run.out;
}

} // namespace
} // namespace dorvik
