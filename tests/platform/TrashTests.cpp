// The desktop's Trash on real files, in a home and data folder of the test's own, so that the
// user's Trash is never touched.

#include "platform/Trash.h"
#include "platform/TrashRestore.h"
#include "support/Environment.h"
#include "support/ScratchMount.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik {
namespace {

namespace fs = std::filesystem;
using platform::moveToTrash;
using platform::restoreFromTrash;

class TrashTest : public testing::Test, protected test::TestHome {
protected:
    std::string files = trashFiles;
    std::string info = dataHome + "/Trash/info";

    // The trashed item's path, or a test failure.
    std::string trash(const std::string& path) {
        const platform::TrashOutcome outcome = moveToTrash(path);
        EXPECT_FALSE(outcome.error) << path << ": " << outcome.error->description;
        EXPECT_TRUE(outcome.trashedPath) << path;
        return outcome.trashedPath.value_or("");
    }
};

// Seconds between the local time written as "YYYY-MM-DDThh:mm:ss" and now.
double secondsFromNow(const std::string& text) {
    tm fields{};
    if (strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &fields) == nullptr) {
        return 1e9;
    }
    fields.tm_isdst = -1;
    return std::fabs(std::difftime(mktime(&fields), time(nullptr)));
}

TEST_F(TrashTest, AnItemGoesToTheHomeTrashWithItsInfo) {
    const std::string original = dir / "home/Documents/Q3 report 100%.pdf";
    test::writeText(original, "figures");
    const std::string trashed = trash(original);
    EXPECT_EQ(trashed, files + "/Q3 report 100%.pdf");
    EXPECT_FALSE(test::entryExists(original));
    EXPECT_EQ(test::readText(trashed), "figures");

    const std::string infoText = test::readText(info + "/Q3 report 100%.pdf.trashinfo");
    const std::string head =
        "[Trash Info]\nPath=" + platform::trashInfoEscaped(original) + "\nDeletionDate=";
    ASSERT_TRUE(infoText.starts_with(head)) << infoText;
    EXPECT_NE(infoText.find("/Documents/Q3%20report%20100%25.pdf\n"), std::string::npos)
        << infoText;
    const std::string date = infoText.substr(head.size(), 19);
    EXPECT_EQ(infoText.size(), head.size() + 20) << infoText;
    EXPECT_LT(secondsFromNow(date), 120) << date;
    // The trash is the user's alone.
    struct stat st {};
    ASSERT_EQ(stat((dataHome + "/Trash").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0700u);
}

TEST(Trash, InfoPathsAreEscapedByteByByte) {
    const struct {
        std::string path;
        std::string escaped;
    } cases[] = {
        {"/home/me/plain-name_1.0~", "/home/me/plain-name_1.0~"},
        {"/a b/c#d?e&f=g+h", "/a%20b/c%23d%3Fe%26f%3Dg%2Bh"},
        {"/100%", "/100%25"},
        {"/caf\u00E9", "/caf%C3%A9"},
        {"/new\nline", "/new%0Aline"},
        {std::string("/\xFF"), "/%FF"},
        {"sub/relative", "sub/relative"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(platform::trashInfoEscaped(c.path), c.escaped) << c.path;
    }
}

TEST_F(TrashTest, NamesAlreadyInTheTrashGetANumber) {
    const struct {
        std::string path;
        std::string trashedName;
    } cases[] = {
        {dir / "home/one/a.txt", "a.txt"},         {dir / "home/two/a.txt", "a.2.txt"},
        {dir / "home/three/a.txt", "a.3.txt"},     {dir / "home/one/notes", "notes"},
        {dir / "home/two/notes", "notes.2"},       {dir / "home/one/.profile", ".profile"},
        {dir / "home/two/.profile", ".profile.2"},
    };
    for (const auto& c : cases) {
        test::writeText(c.path, c.path);
        const std::string trashed = trash(c.path);
        EXPECT_EQ(trashed, files + "/" + c.trashedName);
        EXPECT_EQ(test::readText(trashed), c.path);
        EXPECT_TRUE(test::entryExists(info + "/" + c.trashedName + ".trashinfo")) << c.trashedName;
    }
    // A stray item without its info file holds its name too.
    test::writeText(files + "/b.txt", "stray");
    test::writeText(dir / "home/b.txt", "new");
    EXPECT_EQ(trash(dir / "home/b.txt"), files + "/b.2.txt");
    EXPECT_EQ(test::readText(files + "/b.txt"), "stray");
    EXPECT_FALSE(test::entryExists(info + "/b.txt.trashinfo"));
}

TEST_F(TrashTest, ALongNameIsCutToLeaveRoomForItsInfo) {
    const std::string name = std::string(240, 'n') + ".data";
    test::writeText(dir / "home/" + name, "x");
    const std::string trashed = trash(dir / "home/" + name);
    const std::string trashedName = fs::path(trashed).filename();
    EXPECT_LE(trashedName.size() + 10, 255u);
    EXPECT_TRUE(trashedName.ends_with(".data"));
    EXPECT_TRUE(test::entryExists(info + "/" + trashedName + ".trashinfo"));
}

TEST_F(TrashTest, ANameTooLongForItsExtensionStaysVisible) {
    // One letter and a 251-byte extension: cutting the stem alone would leave a hidden name.
    const std::string name = "n." + std::string(251, 'e');
    test::writeText(dir / "home/" + name, "x");
    const std::string trashedName = fs::path(trash(dir / "home/" + name)).filename();
    EXPECT_LE(trashedName.size() + 10, 255u);
    EXPECT_TRUE(trashedName.starts_with("n.e")) << trashedName;
    EXPECT_TRUE(test::entryExists(info + "/" + trashedName + ".trashinfo"));
}

TEST_F(TrashTest, ALinkIsTrashedItselfAndAMissingItemIsAFailure) {
    test::writeText(dir / "home/target.txt", "kept");
    test::makeSymlink(dir / "home/target.txt", dir / "home/link");
    const std::string trashed = trash(dir / "home/link");
    EXPECT_TRUE(fs::is_symlink(trashed));
    EXPECT_EQ(test::readText(dir / "home/target.txt"), "kept");

    const platform::TrashOutcome missing = moveToTrash(dir / "home/never-was");
    ASSERT_TRUE(missing.error);
    EXPECT_EQ(missing.error->kind, platform::FileErrorKind::noSuchFile);
    EXPECT_FALSE(missing.trashedPath);
    EXPECT_FALSE(test::entryExists(info + "/never-was.trashinfo"));
}

TEST_F(TrashTest, RestoringPutsTheItemBackAndTakesItsInfoAway) {
    test::writeFile(dir / "home/project/build/out.o", 3000);
    const std::string trashed = trash(dir / "home/project/build");
    ASSERT_TRUE(test::entryExists(info + "/build.trashinfo"));

    // Something new at the old place: nothing moves, nothing is replaced.
    test::writeText(dir / "home/project/build", "a newer file");
    const auto refused = restoreFromTrash(trashed, dir / "home/project/build");
    ASSERT_TRUE(refused);
    EXPECT_EQ(test::readText(dir / "home/project/build"), "a newer file");
    EXPECT_TRUE(test::entryExists(trashed + "/out.o"));
    EXPECT_TRUE(test::entryExists(info + "/build.trashinfo"));

    fs::remove(dir / "home/project/build");
    EXPECT_EQ(restoreFromTrash(trashed, dir / "home/project/build"), std::nullopt);
    EXPECT_EQ(fs::file_size(dir / "home/project/build/out.o"), 3000u);
    EXPECT_FALSE(test::entryExists(trashed));
    EXPECT_FALSE(test::entryExists(info + "/build.trashinfo"));
}

TEST_F(TrashTest, AnotherFilesystemHasItsOwnTrashAtItsTop) {
    test::ScratchMount mount(dir / "volume");
    if (!mount.mounted()) {
        GTEST_SKIP() << mount.whyNot();
    }
    const std::string uid = std::to_string(geteuid());
    test::writeText(dir / "volume/photos/cat 1.jpg", "meow");
    const std::string trashed = trash(dir / "volume/photos/cat 1.jpg");
    const std::string own = dir / "volume/.Trash-" + uid;
    EXPECT_EQ(trashed, own + "/files/cat 1.jpg");
    EXPECT_EQ(test::readText(trashed), "meow");
    const std::string infoText = test::readText(own + "/info/cat 1.jpg.trashinfo");
    EXPECT_TRUE(infoText.starts_with("[Trash Info]\nPath=photos/cat%201.jpg\nDeletionDate="))
        << infoText;
    EXPECT_FALSE(test::entryExists(files + "/cat 1.jpg"));

    EXPECT_EQ(restoreFromTrash(trashed, dir / "volume/photos/cat 1.jpg"), std::nullopt);
    EXPECT_EQ(test::readText(dir / "volume/photos/cat 1.jpg"), "meow");
    EXPECT_FALSE(test::entryExists(own + "/info/cat 1.jpg.trashinfo"));

    // A shared .Trash prepared with the sticky bit takes precedence; without it, it is ignored.
    test::makeFolder(dir / "volume/.Trash");
    chmod((dir / "volume/.Trash").c_str(), 0777);
    EXPECT_EQ(trash(dir / "volume/photos/cat 1.jpg"), own + "/files/cat 1.jpg");
    chmod((dir / "volume/.Trash").c_str(), 01777);
    test::writeText(dir / "volume/photos/dog.jpg", "woof");
    EXPECT_EQ(trash(dir / "volume/photos/dog.jpg"),
              dir / "volume/.Trash/" + uid + "/files/dog.jpg");
    EXPECT_TRUE(test::entryExists(dir / "volume/.Trash/" + uid + "/info/dog.jpg.trashinfo"));
}

// Both cases run on a scratch filesystem of their own, so that a trash made at the wrong top
// lands inside the test's folder, never at the top of the machine's own filesystem.
TEST_F(TrashTest, ABindMountOfTheSameFilesystemUsesTheTrashAtItsOwnTop) {
    test::ScratchMount volume(dir / "volume");
    if (!volume.mounted()) {
        GTEST_SKIP() << volume.whyNot();
    }
    test::makeFolder(dir / "volume/source");
    test::ScratchMount bound(dir / "volume/mounted",
                             test::ScratchMount::BindOf{dir / "volume/source"});
    ASSERT_TRUE(bound.mounted()) << bound.whyNot();
    const std::string uid = std::to_string(geteuid());
    test::writeText(dir / "volume/mounted/photos/cat.jpg", "meow");
    const std::string trashed = trash(dir / "volume/mounted/photos/cat.jpg");
    // The mount is the top: nothing is made above it, at the filesystem's own top.
    const std::string own = dir / "volume/mounted/.Trash-" + uid;
    EXPECT_EQ(trashed, own + "/files/cat.jpg");
    EXPECT_EQ(test::readText(trashed), "meow");
    const std::string infoText = test::readText(own + "/info/cat.jpg.trashinfo");
    EXPECT_TRUE(infoText.starts_with("[Trash Info]\nPath=photos/cat.jpg\n")) << infoText;
    EXPECT_FALSE(test::entryExists(dir / "volume/.Trash-" + uid));
}

TEST_F(TrashTest, AHomeTrashThatIsALinkIsRefusedNotBypassed) {
    test::ScratchMount volume(dir / "volume");
    if (!volume.mounted()) {
        GTEST_SKIP() << volume.whyNot();
    }
    const std::string ownHome = dir / "volume/home";
    const std::string ownData = dir / "volume/data";
    test::ScopedEnvironment homeVariable("HOME", ownHome);
    test::ScopedEnvironment dataVariable("XDG_DATA_HOME", ownData);
    test::makeFolder(dir / "volume/elsewhere/files");
    test::makeFolder(dir / "volume/elsewhere/info");
    test::makeFolder(ownData);
    test::makeSymlink(dir / "volume/elsewhere", ownData + "/Trash");
    test::writeText(ownHome + "/notes.txt", "mine");

    const platform::TrashOutcome outcome = moveToTrash(ownHome + "/notes.txt");
    ASSERT_TRUE(outcome.error);
    EXPECT_FALSE(outcome.trashedPath);
    // Not through the link, nor to the trash at the top of the filesystem instead.
    EXPECT_EQ(test::readText(ownHome + "/notes.txt"), "mine");
    EXPECT_TRUE(fs::is_empty(dir / "volume/elsewhere/files"));
    EXPECT_FALSE(test::entryExists(dir / "volume/.Trash-" + std::to_string(geteuid())));
}

} // namespace
} // namespace dorvik
