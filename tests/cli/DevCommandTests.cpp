// dorvik-cli dev as a script and a terminal see it: the artifacts and virtual disks of a scan or
// of an archive, with the developer rules' junk of the home folder in HOME.

#include "cli/CliRun.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

class DevCommandTest : public ::testing::Test {
protected:
    test::TempDir dir;
    std::string home = dir / "home";
    std::string environment =
        "HOME=" + shellQuoted(home) + " XDG_DATA_HOME=" + shellQuoted(dir / "data");
    std::string modules = home + "/code/web/node_modules";
    std::string npm = home + "/.npm/_cacache/index";
    std::string docker = home + "/.docker/desktop/vms/0/data/Docker.raw";

    void SetUp() override {
        test::writeAllocatedFile(modules + "/blob", 30'000'000);
        // Below the limit: no artifact, but a change to the project.
        test::writeAllocatedFile(home + "/code/web/src/__pycache__/blob", 1'000'000);
        test::setModificationTime(home + "/code/web", 1'600'000'000);
        test::writeAllocatedFile(npm + "/blob", 2'000'000);
        test::writeAllocatedFile(docker, 600'000'000, 64'000'000'000);
    }
};

TEST_F(DevCommandTest, JsonListsTheArtifactsTheRulesItemsAndTheDisksOfAFolderOrAnArchive) {
    const test::CliRun fresh = cli("dev " + shellQuoted(home) + " --json", false, environment);
    ASSERT_EQ(fresh.status, 0) << fresh.out;
    const nlohmann::json document = nlohmann::json::parse(fresh.out);

    const nlohmann::json& items = document.at("items");
    ASSERT_EQ(items.size(), 2u) << items.dump(2);
    EXPECT_EQ(items[0],
              (nlohmann::json{
                  {"path", modules},
                  {"title", "web / node_modules"},
                  {"detail", "Node dependencies. `npm install` restores them."},
                  {"size", test::allocatedBytes(modules) + test::allocatedBytes(modules + "/blob")},
                  {"lastTouched", 1'600'000'000.0},
                  {"removal", "permanent"},
              }));
    EXPECT_EQ(items[1]["path"], npm);
    EXPECT_EQ(items[1]["title"], "npm cache");

    const nlohmann::json& disks = document.at("virtualDisks");
    ASSERT_EQ(disks.size(), 1u) << disks.dump(2);
    EXPECT_EQ(disks[0]["path"], docker);
    EXPECT_EQ(disks[0]["name"], "Docker.raw");
    EXPECT_EQ(disks[0]["owner"], "Docker Desktop");
    EXPECT_EQ(disks[0]["size"], test::allocatedBytes(docker));
    EXPECT_EQ(disks[0]["capacity"], 64'000'000'000);
    EXPECT_EQ(disks[0]["command"], "docker system prune");

    // The same from the archive of a scan, whatever the folder it runs in.
    const std::string archive = dir / "home.dvscan";
    ASSERT_EQ(
        cli("scan " + shellQuoted(home) + " --save " + shellQuoted(archive), false, environment)
            .status,
        0);
    const test::CliRun loaded =
        cli("dev --load " + shellQuoted(archive) + " --json", false, environment);
    ASSERT_EQ(loaded.status, 0) << loaded.out;
    EXPECT_EQ(nlohmann::json::parse(loaded.out), document);
}

TEST_F(DevCommandTest, TextGivesEachItemItsSizePathAndWhatToDo) {
    const test::CliRun run = cli("dev " + shellQuoted(home), false, environment);
    ASSERT_EQ(run.status, 0) << run.out;
    const auto at = [&](const std::string& text) { return run.out.find(text); };
    EXPECT_NE(at("Developer artifacts\n       30 MB  web / node_modules  ~/code/web/node_modules\n"
                 "              Node dependencies. `npm install` restores them.\n"),
              std::string::npos)
        << run.out;
    EXPECT_NE(at("  npm cache  ~/.npm/_cacache/index\n"), std::string::npos) << run.out;
    EXPECT_NE(at("  Total: "), std::string::npos) << run.out;
    EXPECT_NE(at("Virtual disks\n      600 MB  Docker.raw (Docker Desktop), can grow to 64 GB  "
                 "~/.docker/desktop/vms/0/data/Docker.raw\n"),
              std::string::npos)
        << run.out;
    EXPECT_NE(at("              $ docker system prune\n"), std::string::npos) << run.out;
    EXPECT_LT(at("Developer artifacts"), at("Virtual disks"));
}

TEST(DevCommand, NothingFoundBadWordsAndMissingInput) {
    test::TempDir dir;
    test::makeFolder(dir / "empty");
    const std::string environment =
        "HOME=" + shellQuoted(dir / "nobody") + " XDG_DATA_HOME=" + shellQuoted(dir / "data");
    const test::CliRun empty = cli("dev " + shellQuoted(dir / "empty"), false, environment);
    ASSERT_EQ(empty.status, 0);
    EXPECT_EQ(empty.out, "Developer artifacts\n  None found.\n\nVirtual disks\n  None found.\n");

    const struct {
        std::string words;
        std::string message;
    } refusals[] = {
        {"dev --frobnicate", "usage: dorvik-cli dev [PATH | --load FILE] [--json]"},
        {"dev a b", "unexpected b"},
        {"dev " + shellQuoted(dir / "empty") + " --load x.dvscan", "not both"},
        {"dev " + shellQuoted(dir / "missing"), "no such folder"},
        {"dev --load " + shellQuoted(dir / "missing.dvscan"), "no such file"},
    };
    for (const auto& [words, message] : refusals) {
        const test::CliRun run = cli(words, true, environment);
        EXPECT_EQ(run.status, 2) << words;
        EXPECT_NE(run.out.find(message), std::string::npos) << words << "\n" << run.out;
    }
}

} // namespace
} // namespace dorvik
