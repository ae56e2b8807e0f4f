// dorvik-cli scan as a script sees it: exit statuses, messages and the JSON document.

#include "cli/CliRun.h"
#include "support/TempDir.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <sys/stat.h>

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

TEST(ScanCommand, AnyNumberOfThreadsGivesTheSameReport) {
    test::TempDir dir;
    for (int folder = 0; folder < 12; ++folder) {
        const std::string name = dir / ("tree/f" + std::to_string(folder));
        test::writeFile(name + "/deep/big.mov", (folder + 1) << 19);
        test::writeFile(name + "/small.txt", 100 * folder);
        test::makeHardLink(dir / "tree/f0/deep/big.mov", name + "/again.mov");
    }
    auto report = [&](const std::string& threads) {
        const CliRun run = cli("scan --json --top 5 " + threads + " '" + (dir / "tree") + "'");
        EXPECT_EQ(run.status, 0) << run.out;
        auto json = nlohmann::json::parse(run.out);
        for (const char* key : {"duration", "finishedAt"}) {
            EXPECT_TRUE(json.contains(key));
            json.erase(key);
        }
        return json;
    };
    auto single = report("--threads 1");
    EXPECT_EQ(single["threads"], 1);
    EXPECT_EQ(single["hardLinksSkipped"], 12); // thirteen paths to f0/deep/big.mov
    single.erase("threads");
    const struct {
        std::string words;
        int threads; // 0: as many as the machine gives
    } cases[] = {{"--threads 3", 3}, {"--threads 8", 8}, {"", 0}};
    for (const auto& [words, threads] : cases) {
        auto json = report(words);
        if (threads > 0) {
            EXPECT_EQ(json["threads"], threads) << words;
        } else {
            EXPECT_GE(json["threads"], 1);
            EXPECT_LE(json["threads"], 8);
        }
        json.erase("threads");
        EXPECT_EQ(json, single) << words;
    }
    const CliRun files = cli("files --threads 2 '" + (dir / "tree") + "'");
    EXPECT_EQ(files.status, 0);
    EXPECT_EQ(files.out, cli("files --threads 1 '" + (dir / "tree") + "'").out);

    for (const std::string words : {"scan --threads 0", "scan --threads 9", "scan --threads two",
                                    "files --threads -1", "scan --threads"}) {
        const CliRun run = cli(words + " '" + dir.path() + "'", true);
        EXPECT_EQ(run.status, 2) << words;
        EXPECT_NE(run.out.find("--threads"), std::string::npos) << words << "\n" << run.out;
    }
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

TEST(ScanCommand, SavedArchiveLoadsToTheSameReport) {
    test::TempDir dir;
    test::writeFile(dir / "tree/a/big.iso", 2 << 20);
    test::writeFile(dir / "tree/b/small.txt", 10);
    const std::string archive = dir / "saved.dvscan";
    const CliRun scanned = cli("scan --json --save '" + archive + "' '" + (dir / "tree") + "'");
    ASSERT_EQ(scanned.status, 0);
    const CliRun loaded = cli("load --json '" + archive + "'");
    ASSERT_EQ(loaded.status, 0);
    // The archive keeps the scan, not how many threads walked it.
    auto scannedJson = nlohmann::json::parse(scanned.out);
    scannedJson.erase("threads");
    EXPECT_EQ(nlohmann::json::parse(loaded.out), scannedJson);

    test::writeFile(dir / "junk.dvscan", 5000);
    const struct {
        std::string words;
        std::string message;
    } failures[] = {
        {"load '" + (dir / "junk.dvscan") + "'", "not a Dorvik scan archive"},
        {"load '" + (dir / "absent.dvscan") + "'", "no such file"},
        {"load", "give the archive"},
        {"scan --save", "--save needs a value"},
    };
    for (const auto& [words, message] : failures) {
        const CliRun run = cli(words, true);
        EXPECT_EQ(run.status, 2) << words;
        EXPECT_NE(run.out.find(message), std::string::npos) << words << "\n" << run.out;
    }
}

TEST(ScanCommand, TopZeroListsNoLargestItems) {
    test::TempDir dir;
    test::writeFile(dir / "a/big.iso", 2 << 20);
    const CliRun run = cli("scan --top 0 '" + dir.path() + "'");
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(run.out.find("Largest"), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("none of"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("By kind of file"), std::string::npos) << run.out;
}

TEST(ScanCommand, UnreadableFoldersAreNamedAndAnUnreadableRootFails) {
    test::TempDir dir;
    test::writeFile(dir / "open/a.txt", 10);
    test::writeFile(dir / "shut/inner/b.txt", 10);
    test::writeFile(dir / "shut2/c.txt", 10);
    test::handToUnprivileged(dir.path());
    ::chmod((dir / "shut").c_str(), 0);
    ::chmod((dir / "shut2").c_str(), 0);
    struct Outcome {
        CliRun text;
        CliRun json;
        CliRun root;
    };
    const auto words = [](const std::string& text) {
        return std::vector<char>(text.begin(), text.end());
    };
    const auto seen = test::runUnprivilegedBytes([&] {
        // Three answers, each the exit status and the output, separated by NUL bytes.
        std::string answer;
        for (const std::string& command :
             {"scan '" + dir.path() + "'", "scan --json '" + dir.path() + "'",
              "scan '" + (dir / "shut") + "'"}) {
            const CliRun run = cli(command, true);
            answer += std::to_string(run.status) + '\n' + run.out + '\0';
        }
        return words(answer);
    });
    ::chmod((dir / "shut").c_str(), 0755);
    ::chmod((dir / "shut2").c_str(), 0755);
    ASSERT_TRUE(seen);
    std::vector<std::string> answers;
    std::string current;
    for (char byte : *seen) {
        if (byte == '\0') {
            answers.push_back(current);
            current.clear();
        } else {
            current += byte;
        }
    }
    ASSERT_EQ(answers.size(), 3u);
    EXPECT_TRUE(answers[0].starts_with("0\n")) << answers[0];
    EXPECT_NE(answers[0].find("2 entries could not be read"), std::string::npos) << answers[0];
    // In the order the walk met them, which is the folder's own order.
    const auto json = nlohmann::json::parse(answers[1].substr(answers[1].find('\n') + 1));
    const std::vector<std::string> unreadable = json["unreadablePaths"];
    EXPECT_EQ(std::set<std::string>(unreadable.begin(), unreadable.end()),
              (std::set<std::string>{dir / "shut", dir / "shut2"}));
    ASSERT_EQ(unreadable.size(), 2u);
    EXPECT_NE(answers[0].find("Folders that could not be read\n  " + unreadable[0] + "\n  " +
                              unreadable[1] + "\n"),
              std::string::npos)
        << answers[0];
    EXPECT_TRUE(answers[2].starts_with("1\n")) << answers[2];
    EXPECT_NE(answers[2].find("cannot read the folder " + (dir / "shut")), std::string::npos)
        << answers[2];
}

TEST(ScanCommand, TheApplicationsExclusionsHoldUnlessAskedNotTo) {
    test::TempDir dir;
    test::writeFile(dir / "tree/kept/a.bin", 1 << 20);
    test::writeFile(dir / "tree/hidden/b.bin", 1 << 20);
    test::writeFile(dir / "tree/also hidden/c.bin", 1 << 20);
    // What the application's settings hold after two "Exclude from Scans".
    test::writeText(dir / "config/Dorvik/Dorvik.conf",
                    "[General]\nexcludedPaths=" + (dir / "tree/hidden") + "\\n" +
                        (dir / "tree/also hidden") + "\n");
    const std::string environment = "XDG_CONFIG_HOME='" + (dir / "config") + "'";
    const struct {
        std::string words;
        int64_t files;
    } cases[] = {
        {"scan --json '" + (dir / "tree") + "'", 1},
        {"scan --json --no-exclusions '" + (dir / "tree") + "'", 3},
        {"scan --json --exclude '" + (dir / "tree/kept") + "' '" + (dir / "tree") + "'", 0},
    };
    for (const auto& [words, files] : cases) {
        const CliRun run = cli(words, false, environment);
        ASSERT_EQ(run.status, 0) << words;
        EXPECT_EQ(nlohmann::json::parse(run.out)["totalFiles"], files) << words;
    }
    const CliRun listed = cli("files '" + (dir / "tree") + "'", false, environment);
    EXPECT_EQ(listed.out.find("b.bin"), std::string::npos) << listed.out;
    EXPECT_NE(listed.out.find("a.bin"), std::string::npos) << listed.out;
}

} // namespace
} // namespace dorvik
