#include "reclaim/CloudDownloads.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik {
namespace {

using platform::CloudDownloadStatus;
using platform::CloudFileFacts;

ApplicationFinder noApplications() {
    return [](std::string_view) { return std::optional<std::string>(); };
}

TEST(CloudDownloads, EachEntryCountsInItsOneWay) {
    struct Case {
        std::string name;
        std::optional<CloudFileFacts> facts;
        int64_t localSize;
        int64_t cloudOnlySize;
        int64_t cloudOnlyCount;
        std::optional<CloudItem> item;
    };
    const auto file = [](std::optional<int64_t> length, std::optional<int64_t> allocated,
                         std::optional<CloudDownloadStatus> status = std::nullopt,
                         std::optional<bool> uploaded = std::nullopt) {
        return CloudFileFacts{true, length, allocated, status, uploaded};
    };
    const std::vector<Case> cases = {
        {".report.pdf.icloud", file(200, 4096), 0, 0, 1, std::nullopt},
        {".DS_Store", file(6148, 8192), 0, 0, 0, std::nullopt},
        {"unreadable", std::nullopt, 0, 0, 0, std::nullopt},
        {"folder", CloudFileFacts{false, 4096, 4096, std::nullopt, std::nullopt}, 0, 0, 0,
         std::nullopt},
        {"evicted", file(5000, 8192, CloudDownloadStatus::notDownloaded), 0, 5000, 1, std::nullopt},
        {"no-blocks", file(5000, 0), 0, 5000, 1, std::nullopt},
        {"no-blocks-downloaded", file(5000, 0, CloudDownloadStatus::current), 0, 5000, 1,
         std::nullopt},
        {"empty", file(0, 0), 0, 0, 0, std::nullopt},
        {"no-length", file(std::nullopt, std::nullopt), 0, 0, 0, std::nullopt},
        {"small", file(999'999, 999'999, CloudDownloadStatus::current, true), 999'999, 0, 0,
         std::nullopt},
        {"big", file(1'000'000, 1'000'000, CloudDownloadStatus::current, true), 1'000'000, 0, 0,
         CloudItem{"/c/big", "big", 1'000'000, true}},
        {"no-upload-flag", file(3'000'000, 3'002'000), 3'002'000, 0, 0,
         CloudItem{"/c/no-upload-flag", "no-upload-flag", 3'002'000, false}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        CloudFolder folder;
        folder.path = "/c";
        countCloudEntry(folder, "/c/" + row.name, row.name, row.facts);
        EXPECT_EQ(folder.localSize, row.localSize);
        EXPECT_EQ(folder.cloudOnlySize, row.cloudOnlySize);
        EXPECT_EQ(folder.cloudOnlyCount, row.cloudOnlyCount);
        if (row.item) {
            ASSERT_EQ(folder.items.size(), 1u);
            EXPECT_EQ(folder.items[0], *row.item);
        } else {
            EXPECT_TRUE(folder.items.empty());
        }
    }
}

TEST(CloudDownloads, ContainersAreTitledByTheirApplicationOrTheirLastPiece) {
    std::vector<std::string> asked;
    const ApplicationFinder finder = [&asked](std::string_view identifier) {
        asked.emplace_back(identifier);
        return identifier == "com.example.Writer"
                   ? std::optional<std::string>("/Applications/Writer Pro.app")
                   : std::nullopt;
    };
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"iCloud~com~example~notes", "Notes"},
        {"ABC123~com~example~Notes2", "Notes2"},
        {"lowerCase~x", "X"},
        {"ABCDE12345~com~example~Writer", "Writer Pro"},
        {"iCloud", "ICloud"},
    };
    for (const auto& [name, title] : cases) {
        EXPECT_EQ(cloudContainerTitle(name, finder), title) << name;
    }
    EXPECT_EQ(asked, (std::vector<std::string>{"com.example.notes", "com.example.Notes2",
                                               "lowerCase.x", "com.example.Writer", ""}));
}

TEST(CloudDownloads, NoMobileDocumentsMeansICloudIsNotInUse) {
    test::TempDir home;
    EXPECT_FALSE(buildCloudReport(home.path(), noApplications()).isAvailable);
    test::makeFolder(home / "Library/Mobile Documents");
    EXPECT_FALSE(buildCloudReport(home.path(), noApplications()).isAvailable);
    test::makeFolder(home / "Library/Mobile Documents/.hidden");
    const CloudReport onlyHidden = buildCloudReport(home.path(), noApplications());
    EXPECT_TRUE(onlyHidden.isAvailable);
    EXPECT_TRUE(onlyHidden.folders.empty());
}

TEST(CloudDownloads, TheTreeBecomesFoldersLargestFirst) {
    test::TempDir home;
    const std::string base = home / "Library/Mobile Documents";
    const std::string drive = base + "/com~apple~CloudDocs";
    test::writeAllocatedFile(drive + "/Projects/film.mov", 3'000'000);
    test::writeAllocatedFile(drive + "/Projects/deep/.hidden/render.bin", 2'000'000);
    test::writeFile(drive + "/Projects/notes.txt", 10'000);
    test::writeText(drive + "/Projects/.plan.key.icloud", "placeholder");
    test::writeFile(drive + "/.DS_Store", 6148);
    test::writeAllocatedFile(drive + "/.Trash/old.mov", 5'000'000);
    test::writeAllocatedFile(drive + "/loose.zip", 1'500'000);
    test::makeSymlink("/nonexistent", drive + "/dangling");
    test::writeSparseFile(base + "/iCloud~com~example~reader/Documents/book.epub", 8'000'000);
    test::writeAllocatedFile(base + "/ABCDE12345~com~example~Writer/Documents/draft.pages",
                             1'200'000);
    test::makeFolder(base + "/iCloud~com~example~empty/Documents");

    const CloudReport report = buildCloudReport(home.path(), noApplications());
    ASSERT_TRUE(report.isAvailable);
    std::vector<std::string> titles;
    for (const CloudFolder& folder : report.folders) {
        titles.push_back(folder.title);
    }
    // The cloud-only container has nothing here and comes last; the empty one is left out.
    EXPECT_EQ(titles, (std::vector<std::string>{"Projects", std::string(topOfDriveTitle), "Writer",
                                                "Reader"}));
    const CloudFolder& projects = report.folders[0];
    EXPECT_FALSE(projects.isApp);
    EXPECT_EQ(projects.cloudOnlyCount, 1);
    EXPECT_EQ(projects.cloudOnlySize, 0);
    ASSERT_EQ(projects.items.size(), 2u);
    EXPECT_EQ(projects.items[0].name, "film.mov");
    EXPECT_EQ(projects.items[1].path, drive + "/Projects/deep/.hidden/render.bin");
    // The placeholder has blocks of its own, yet counts for nothing here.
    EXPECT_EQ(projects.localSize,
              test::allocatedBytes(drive + "/Projects/film.mov") +
                  test::allocatedBytes(drive + "/Projects/deep/.hidden/render.bin") +
                  test::allocatedBytes(drive + "/Projects/notes.txt"));
    const CloudFolder& top = report.folders[1];
    ASSERT_EQ(top.items.size(), 1u);
    EXPECT_EQ(top.items[0].name, "loose.zip");
    EXPECT_FALSE(top.items[0].isUploaded); // Linux never knows it
    const CloudFolder& reader = report.folders[3];
    EXPECT_TRUE(reader.isApp);
    EXPECT_EQ(reader.localSize, 0);
    EXPECT_EQ(reader.cloudOnlySize, 8'000'000);
    EXPECT_EQ(reader.cloudOnlyCount, 1);
}

TEST(CloudDownloads, EvictionKeepsWhatIsNotUploadedAndSaysWhatHappened) {
    const std::vector<CloudItem> items = {
        {"/c/a.mov", "a.mov", 3'000'000, true},
        {"/c/b.mov", "b.mov", 2'000'000, false},
        {"/c/c.mov", "c.mov", 1'000'000, true},
    };
    // Linux cannot evict: a stand-in answers as a Mac would, failing the third file.
    std::vector<std::string> asked;
    const EvictionReport report = evictDownloads(items, [&asked](const std::string& path) {
        asked.push_back(path);
        return path == "/c/c.mov" ? std::optional<std::string>("The file is open.") : std::nullopt;
    });
    EXPECT_EQ(asked, (std::vector<std::string>{"/c/a.mov", "/c/c.mov"}));
    EXPECT_EQ(report.freed, 3'000'000);
    EXPECT_EQ(report.evicted, (std::vector<std::string>{"/c/a.mov"}));
    ASSERT_EQ(report.failures.size(), 2u);
    EXPECT_EQ(report.failures[0].reason, "Not uploaded to iCloud yet.");
    EXPECT_EQ(report.failures[1].reason, "The file is open.");
    const Toast toast = evictionToast(report);
    EXPECT_EQ(toast.message, "3 MB freed");
    EXPECT_EQ(toast.detail,
              "2 file(s) couldn't be removed from this computer. Details in History.");
    EXPECT_TRUE(toast.undoable.empty());

    const EvictionReport onLinux = evictDownloads({items[0]}, platform::evictDownload);
    ASSERT_EQ(onLinux.failures.size(), 1u);
    EXPECT_EQ(onLinux.failures[0].reason, std::string(platform::evictionUnavailableMessage));
    EXPECT_EQ(evictionToast(onLinux).message, "Nothing was removed");
    EXPECT_EQ(evictionToast(EvictionReport{0, {"/c/x"}, {}}).detail,
              "The files are still in iCloud and download again when you open them.");
}

} // namespace
} // namespace dorvik
