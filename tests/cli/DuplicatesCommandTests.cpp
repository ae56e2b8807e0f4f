// dorvik-cli duplicates end to end: the groups in text and JSON, and sharing with its question.

#include "base/TextForms.h"
#include "cli/CliRun.h"
#include "support/ReflinkMount.h"
#include "support/SampleFiles.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

using test::mebibyte;
using test::writeContent;

ino_t inode(const std::string& path) {
    struct stat st {};
    stat(path.c_str(), &st);
    return st.st_ino;
}

// Three copies of one file and two of a larger one, with dates that put them in order.
void writeGroups(const std::string& folder) {
    writeContent(folder + "/photos/a.jpg", 2 * mebibyte, 'a');
    writeContent(folder + "/backup/a.jpg", 2 * mebibyte, 'a');
    writeContent(folder + "/old/a copy.jpg", 2 * mebibyte, 'a');
    writeContent(folder + "/video/b.mov", 3 * mebibyte, 'b');
    writeContent(folder + "/backup/b.mov", 3 * mebibyte, 'b');
    writeContent(folder + "/small/c.bin", mebibyte - 1, 'c');
    writeContent(folder + "/backup/c.bin", mebibyte - 1, 'c');
    test::setModificationTime(folder + "/photos/a.jpg", 1'600'000'000);
    test::setModificationTime(folder + "/backup/a.jpg", 1'700'000'000);
    test::setModificationTime(folder + "/old/a copy.jpg", 1'500'000'000);
    test::setModificationTime(folder + "/video/b.mov", 1'600'000'000);
    test::setModificationTime(folder + "/backup/b.mov", 1'650'000'000);
}

std::vector<std::vector<std::string>> pathsOf(const nlohmann::json& document) {
    std::vector<std::vector<std::string>> paths;
    for (const auto& group : document["groups"]) {
        paths.emplace_back();
        for (const auto& file : group["files"]) {
            paths.back().push_back(file["path"]);
        }
    }
    return paths;
}

class DuplicatesCommandTest : public testing::Test, protected test::TestHome {};

TEST_F(DuplicatesCommandTest, GroupsLargestRecoverableFirstWithTheOldestFileFirst) {
    writeGroups(home);
    const auto run = cli("duplicates --json " + shellQuoted(home));
    ASSERT_EQ(run.status, 0) << run.out;
    const auto document = nlohmann::json::parse(run.out);

    EXPECT_EQ(pathsOf(document),
              (std::vector<std::vector<std::string>>{
                  {home + "/old/a copy.jpg", home + "/photos/a.jpg", home + "/backup/a.jpg"},
                  {home + "/video/b.mov", home + "/backup/b.mov"}}));
    const auto& first = document["groups"][0];
    const int64_t size = test::allocatedBytes(home + "/photos/a.jpg");
    EXPECT_EQ(first["size"], size);
    EXPECT_EQ(first["recoverableBytes"], 2 * size);
    EXPECT_EQ(first["id"].get<std::string>().size(), 64u);
    EXPECT_EQ(first["files"][0]["modified"], 1'500'000'000.0);
    EXPECT_EQ(first["files"][0]["shared"], false);

    // Below the least size by default, found when it is lowered.
    const auto lowered =
        nlohmann::json::parse(cli("duplicates --json --min-size 1000 " + shellQuoted(home)).out);
    EXPECT_EQ(lowered["groups"].size(), 3u);

    const auto text = cli("duplicates " + shellQuoted(home));
    EXPECT_NE(text.out.find("3 copies \u00B7 " + TextForms::size(size) + " each \u00B7 " +
                            TextForms::size(2 * size) + " recoverable\n"),
              std::string::npos)
        << text.out;
    EXPECT_NE(text.out.find("~/old/a copy.jpg\n"), std::string::npos) << text.out;
    EXPECT_TRUE(text.out.ends_with(
        "2 groups \u00B7 " +
        TextForms::size(2 * size + test::allocatedBytes(home + "/video/b.mov")) + " recoverable\n"))
        << text.out;
}

TEST_F(DuplicatesCommandTest, SharingIsAskedFirstAndRefusedWithoutATerminal) {
    writeGroups(home);
    const ino_t before = inode(home + "/backup/a.jpg");

    const auto unattended = test::cliUnattended("duplicates --share " + shellQuoted(home));
    EXPECT_EQ(unattended.status, 2) << unattended.out;
    EXPECT_NE(unattended.out.find("add --yes"), std::string::npos) << unattended.out;
    // Progress is for a terminal only: none in what a pipe reads, standard error merged.
    EXPECT_EQ(unattended.out.find("Comparing contents"), std::string::npos) << unattended.out;

    const auto declined = test::cliOnTerminal("duplicates --share " + shellQuoted(home), "n\n");
    EXPECT_NE(declined.out.find("Replace 3 copies by clones"), std::string::npos) << declined.out;
    EXPECT_NE(declined.out.find("Nothing was changed."), std::string::npos) << declined.out;
    EXPECT_NE(declined.out.find("Comparing contents\u2026 100%"), std::string::npos)
        << declined.out;
    EXPECT_EQ(inode(home + "/backup/a.jpg"), before);

    EXPECT_EQ(cli("duplicates --json --share " + shellQuoted(home)).status, 2);
}

TEST_F(DuplicatesCommandTest, SharingOnAFilesystemWithReflinks) {
    test::ReflinkMount xfs(dir.path());
    if (!xfs.mounted()) {
        GTEST_SKIP() << xfs.whyNot();
    }
    const std::string root = xfs.path();
    writeGroups(root);
    const auto shared = cli("duplicates --share --yes " + shellQuoted(root));
    EXPECT_EQ(shared.status, 0) << shared.out;
    const int64_t expected = 2 * 2 * mebibyte + 3 * mebibyte;
    EXPECT_NE(shared.out.find(TextForms::size(expected) + " reclaimed\n3 copies now share space"),
              std::string::npos)
        << shared.out;

    const auto document = nlohmann::json::parse(cli("duplicates --json " + shellQuoted(root)).out);
    for (const auto& group : document["groups"]) {
        EXPECT_EQ(group["recoverableBytes"], 0);
        for (const auto& file : group["files"]) {
            EXPECT_EQ(file["shared"], true) << file["path"];
        }
    }
    const auto again = cli("duplicates --share --yes " + shellQuoted(root));
    EXPECT_NE(again.out.find("These copies already share space\n"), std::string::npos) << again.out;
}

} // namespace
} // namespace dorvik
