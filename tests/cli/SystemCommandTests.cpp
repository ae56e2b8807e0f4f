// dorvik-cli system over a tree laid out like a computer's root: sizes as du gives them, the
// advice, and the snapshots its snapper reports.

#include "base/Wording.h"
#include "cli/CliRun.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

int64_t duBytes(const std::string& path) {
    return std::stoll(test::commandOutput("du -sxB1 " + shellQuoted(path) + " | cut -f1"));
}

TEST(SystemCommand, ListsThePlacesThatExistWithDuSizesAdviceAndSnapshots) {
    test::TempDir root;
    test::writeFile(root / "var/log/journal/machine/system.journal", 800000);
    test::writeFile(root / "var/log/syslog", 120000);
    test::writeFile(root / "var/cache/apt/archives/a.deb", 400000);
    test::writeFile(root / "var/lib/docker/overlay2/layer", 700000);
    test::makeHardLink(root / "var/lib/docker/overlay2/layer", root / "var/lib/docker/copy");
    test::writeFile(root / "swapfile", 1000000);
    test::writeText(root / "usr/bin/snapper",
                    "#!/bin/sh\nprintf 'number,date\\n0,\\n5,2024-03-02 21:45:00\\n'\n");
    chmod((root / "usr/bin/snapper").c_str(), 0755);

    const test::CliRun run = cli("system --json --root " + shellQuoted(root.path()));
    ASSERT_EQ(run.status, 0) << run.out;
    const nlohmann::json report = nlohmann::json::parse(run.out);

    const struct {
        std::string id;
        int64_t size;
        std::string command; // what the advice tells the user to run
    } expected[] = {
        {"swapfile", duBytes(root / "swapfile"), "swapon"},
        {"journal", duBytes(root / "var/log/journal"), "journalctl --vacuum-size="},
        {"docker", duBytes(root / "var/lib/docker"), "docker system prune"},
        {"apt", duBytes(root / "var/cache/apt"), "apt-get clean"},
        {"logs.linux", duBytes(root / "var/log") - duBytes(root / "var/log/journal"), "logrotate"},
        {"caches.linux", duBytes(root / "var/cache") - duBytes(root / "var/cache/apt"), ""},
    };
    ASSERT_EQ(report["parts"].size(), std::size(expected));
    int64_t measured = 0;
    for (const auto& [id, size, command] : expected) {
        const auto part = std::ranges::find(report["parts"], id, [](const nlohmann::json& row) {
            return row["id"].get<std::string>();
        });
        ASSERT_NE(part, report["parts"].end()) << id;
        EXPECT_EQ((*part)["size"], size) << id;
        EXPECT_NE((*part)["advice"].get<std::string>().find(command), std::string::npos) << id;
        measured += size;
    }
    EXPECT_EQ(report["parts"][0]["id"], "swapfile"); // the largest first
    EXPECT_EQ(report["parts"][0]["path"], root / "swapfile");
    EXPECT_EQ(report["parts"][0]["risk"], "protected");
    EXPECT_EQ(report["measured"], measured);

    ASSERT_EQ(report["snapshots"].size(), 1u);
    EXPECT_EQ(report["snapshots"][0]["name"], "5");
    EXPECT_EQ(report["snapshots"][0]["keeper"], "snapper");

    const test::CliRun text = cli("system --root " + shellQuoted(root.path()));
    ASSERT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("System journal"), std::string::npos);
    EXPECT_NE(text.out.find(Wording::shown("Time Machine local snapshots") + "\n  Snapshot 5, "),
              std::string::npos)
        << text.out;
}

TEST(SystemCommand, SaysSoWhenThereAreNoSnapshots) {
    test::TempDir root;
    const test::CliRun run = cli("system --root " + shellQuoted(root.path()));
    ASSERT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("No local snapshots on this disk."), std::string::npos) << run.out;
    EXPECT_EQ(cli("system --bogus", true).status, 2);
}

} // namespace
} // namespace dorvik
