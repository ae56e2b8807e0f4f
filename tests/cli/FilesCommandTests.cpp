// dorvik-cli files: the file list of a real scan, filtered and written as CSV.

#include "cli/CliRun.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

using test::cli;
using test::CliRun;
using test::shellQuoted;

// The names in a CSV text, one a row after the header, in the order written.
std::vector<std::string> namesInCsv(const std::string& csv) {
    std::vector<std::string> names;
    size_t line = csv.find('\n') + 1;
    while (line < csv.size()) {
        const size_t nameStart = csv.find("\",\"", line) + 3;
        names.push_back(csv.substr(nameStart, csv.find('"', nameStart) - nameStart));
        line = csv.find('\n', line) + 1;
    }
    return names;
}

class FilesCommand : public testing::Test {
protected:
    void SetUp() override {
        test::writeFile(dir / "tree/Movies/trip.mov", 3'000'000);
        test::writeFile(dir / "tree/Movies/clip.mp4", 1'000'000);
        test::writeFile(dir / "tree/Documents/thesis.pdf", 2'000'000);
        test::writeFile(dir / "tree/Documents/small.txt", 1000); // below the list's threshold
        test::setModificationTime(dir / "tree/Movies/clip.mp4", 1'500'000'000);
    }

    test::TempDir dir;
};

TEST_F(FilesCommand, FiltersLikeTheListAndPrintsCsvLargestFirst) {
    const std::string tree = shellQuoted(dir / "tree");
    const struct {
        std::string options;
        std::vector<std::string> names;
    } cases[] = {
        {"", {"trip.mov", "thesis.pdf", "clip.mp4"}},
        {"--kind video", {"trip.mov", "clip.mp4"}},
        {"--kind video --kind document", {"trip.mov", "thesis.pdf", "clip.mp4"}},
        {"--bucket documents", {"thesis.pdf"}},
        {"--min-size 2000000", {"trip.mov", "thesis.pdf"}},
        {"--older-than 365", {"clip.mp4"}},
        {"--query TRIP", {"trip.mov"}},
        {"--query /documents/", {"thesis.pdf"}},
    };
    for (const auto& [options, names] : cases) {
        const CliRun run = cli("files " + tree + " " + options);
        ASSERT_EQ(run.status, 0) << options << "\n" << run.out;
        EXPECT_TRUE(run.out.starts_with("Path,Name,Bytes on disk,Bytes,Kind,Category,Modified\n"));
        EXPECT_EQ(namesInCsv(run.out), names) << options;
    }
}

TEST_F(FilesCommand, AnArchiveGivesTheSameListAndCsvGoesToTheFile) {
    ASSERT_EQ(
        cli("scan " + shellQuoted(dir / "tree") + " --save " + shellQuoted(dir / "a.scan")).status,
        0);
    const CliRun scanned = cli("files " + shellQuoted(dir / "tree") + " --kind video");
    const CliRun loaded = cli("files --load " + shellQuoted(dir / "a.scan") +
                                  " --kind video --csv " + shellQuoted(dir / "out.csv"),
                              true);
    ASSERT_EQ(loaded.status, 0) << loaded.out;
    EXPECT_NE(loaded.out.find("2 files written to"), std::string::npos) << loaded.out;
    EXPECT_EQ(test::readText(dir / "out.csv"), scanned.out);

    const CliRun unwritable = cli("files --load " + shellQuoted(dir / "a.scan") + " --csv " +
                                      shellQuoted(dir / "out.csv/inside.csv"),
                                  true);
    EXPECT_EQ(unwritable.status, 1);
    EXPECT_NE(unwritable.out.find("could not write"), std::string::npos) << unwritable.out;
}

TEST_F(FilesCommand, BadInputExitsWithStatusTwoAndSaysWhy) {
    const std::string tree = shellQuoted(dir / "tree");
    const struct {
        std::string words;
        std::string message;
    } cases[] = {
        {"files --kind movies " + tree, "unknown kind movies (one of document, image"},
        {"files --bucket attic " + tree, "unknown bucket attic (one of applications"},
        {"files --min-size -1 " + tree, "--min-size takes a whole number"},
        {"files --load " + shellQuoted(dir / "x.scan") + " " + tree, "give a folder or --load"},
        {"files --load " + shellQuoted(dir / "missing.scan"), "no such file"},
        {"files --load " + shellQuoted(dir / "tree/Movies/trip.mov"), "not a Dorvik scan archive"},
        {"files " + shellQuoted(dir / "missing"), "no such folder"},
        {"files --csv", "--csv needs a value"},
    };
    for (const auto& [words, message] : cases) {
        const CliRun run = cli(words, true);
        EXPECT_EQ(run.status, 2) << words;
        EXPECT_NE(run.out.find(message), std::string::npos) << words << "\n" << run.out;
    }
}

} // namespace
} // namespace dorvik
