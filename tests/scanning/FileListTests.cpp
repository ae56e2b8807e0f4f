// The file lists' filter and their CSV form, on hand-built trees whose paths and numbers are
// chosen to sit on each boundary.

#include "scanning/FileFilter.h"
#include "scanning/FileListCsv.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <functional>

namespace dorvik {
namespace {

constexpr double now = 1'700'000'000;
constexpr double day = 86400;

FileNodePtr folder(const FileNodePtr& parent, const std::string& name) {
    auto node =
        std::make_shared<FileNode>(name, true, false, FileKind::other, StorageBucket::other);
    if (parent) {
        FileNode::adopt(parent, node);
    }
    return node;
}

FileNodePtr file(const FileNodePtr& parent, const std::string& name, int64_t size,
                 FileKind kind = FileKind::document,
                 StorageBucket bucket = StorageBucket::documents, double modified = now) {
    auto node = std::make_shared<FileNode>(name, false, false, kind, bucket);
    node->size = size;
    node->logicalSize = size - 100;
    node->modified = modified;
    FileNode::adopt(parent, node);
    return node;
}

FileFilter filterWith(const std::function<void(FileFilter&)>& change) {
    FileFilter filter;
    change(filter);
    return filter;
}

TEST(FileFilter, EachTestAndItsBoundary) {
    const auto root = folder(nullptr, "/System/Volumes/Data");
    const auto users = folder(root, "Users");
    const auto projects = folder(folder(users, "ann"), "Projects");
    const auto projectsOld = folder(folder(users, "ann"), "ProjectsOld");
    const auto report = file(projects, "Report Q3.PDF", 2'000'000, FileKind::document,
                             StorageBucket::documents, now - 30 * day);
    const auto movie = file(projectsOld, "Café Holiday.mov", 900'000'000, FileKind::video,
                            StorageBucket::video, now - 30 * day + 1);

    const struct {
        const char* what;
        FileFilter filter;
        bool reportPasses;
        bool moviePasses;
    } cases[] = {
        {"the empty filter passes everything", {}, true, true},
        {"minSize equal to size passes", filterWith([](auto& f) { f.minSize = 2'000'000; }), true,
         true},
        {"minSize one above size fails", filterWith([](auto& f) { f.minSize = 2'000'001; }), false,
         true},
        {"kinds hold the node's kind", filterWith([](auto& f) {
             f.kinds = {FileKind::video, FileKind::audio};
         }),
         false, true},
        {"bucket must be the node's",
         filterWith([](auto& f) { f.bucket = StorageBucket::documents; }), true, false},
        {"changed exactly at the cutoff is old enough",
         filterWith([](auto& f) { f.modifiedOlderThanDays = 30; }), true, false},
        {"a query without a slash searches names only",
         filterWith([](auto& f) { f.query = "projects"; }), false, false},
        {"names match without regard to case", filterWith([](auto& f) { f.query = "report q3"; }),
         true, false},
        {"case folding reaches beyond ASCII", filterWith([](auto& f) { f.query = "CAFÉ"; }), false,
         true},
        {"a query with a slash searches the canonical path",
         filterWith([](auto& f) { f.query = "/users/ANN/projects/"; }), true, false},
        {"a path query may run from the folder into the name",
         filterWith([](auto& f) { f.query = "ann/projects/rep"; }), true, false},
        {"a prefix may reach into the name",
         filterWith([](auto& f) { f.pathPrefix = "/Users/ann/Projects/Rep"; }), true, false},
        {"the data volume's prefix is not part of the path",
         filterWith([](auto& f) { f.query = "/System/Volumes"; }), false, false},
        {"the prefix is plain text, so a sibling that extends it passes",
         filterWith([](auto& f) { f.pathPrefix = "/Users/ann/Projects"; }), true, true},
        {"a prefix with its separator keeps the sibling out",
         filterWith([](auto& f) { f.pathPrefix = "/Users/ann/Projects/"; }), true, false},
        {"hideProtected changes nothing", filterWith([](auto& f) { f.hideProtected = true; }), true,
         true},
        {"every test must pass", filterWith([](auto& f) {
             f.query = "holiday";
             f.kinds = {FileKind::video};
             f.minSize = 1;
             f.pathPrefix = "/Users";
         }),
         false, true},
    };
    for (const auto& item : cases) {
        EXPECT_EQ(item.filter.matches(*report, now), item.reportPasses) << item.what;
        EXPECT_EQ(item.filter.matches(*movie, now), item.moviePasses) << item.what;
    }
}

TEST(FileFilter, EqualityComparesEveryFieldIncludingHideProtected) {
    const FileFilter plain;
    EXPECT_EQ(plain, FileFilter{});
    EXPECT_NE(plain, filterWith([](auto& f) { f.hideProtected = true; }));
    EXPECT_NE(plain, filterWith([](auto& f) { f.pathPrefix = ""; }));
    EXPECT_NE(plain, filterWith([](auto& f) { f.modifiedOlderThanDays = 0; }));
}

TEST(FileFilter, PathsOfFilesAtTheTopOfTheDataVolumeAndOfALoneNode) {
    const auto root = folder(nullptr, "/System/Volumes/Data");
    const auto top = file(root, "notes.txt", 1);
    EXPECT_TRUE(filterWith([](auto& f) { f.query = "/NOTES"; }).matches(*top, now));
    EXPECT_TRUE(filterWith([](auto& f) { f.pathPrefix = "/notes"; }).matches(*top, now));
    EXPECT_FALSE(filterWith([](auto& f) { f.query = "//"; }).matches(*top, now));
    const auto lone = folder(nullptr, "/System/Volumes/Data/Users");
    EXPECT_TRUE(filterWith([](auto& f) { f.pathPrefix = "/Users"; }).matches(*lone, now));
}

TEST(FileFilter, InvalidUtf8InANameMatchesOnlyItself) {
    const auto root = folder(nullptr, "/tmp");
    const auto odd = file(root, std::string("bad\xff\xfename"), 1);
    EXPECT_TRUE(filterWith([](auto& f) { f.query = "\xff"; }).matches(*odd, now));
    EXPECT_TRUE(filterWith([](auto& f) { f.query = "NAME"; }).matches(*odd, now));
    EXPECT_FALSE(filterWith([](auto& f) { f.query = "\xfe\xff"; }).matches(*odd, now));
}

TEST(FileListCsv, HeaderQuotingAndCanonicalPaths) {
    const auto root = folder(nullptr, "/System/Volumes/Data");
    const auto home = folder(folder(root, "Users"), "ann");
    const auto tricky =
        file(home, "a,\"b\"", 4096, FileKind::image, StorageBucket::images, 1'700'000'000.0);
    const auto plain =
        file(home, "notes.txt", 12288, FileKind::document, StorageBucket::documents, 0);

    EXPECT_EQ(fileListCsv({}), "Path,Name,Bytes on disk,Bytes,Kind,Category,Modified\n");
    EXPECT_EQ(fileListCsv({tricky, plain}),
              "Path,Name,Bytes on disk,Bytes,Kind,Category,Modified\n"
              "\"/Users/ann/a,\"\"b\"\"\",\"a,\"\"b\"\"\",\"4096\",\"3996\",\"Images\","
              "\"Images & Photos\",\"2023-11-14T22:13:20Z\"\n"
              "\"/Users/ann/notes.txt\",\"notes.txt\",\"12288\",\"12188\",\"Documents\","
              "\"Documents\",\"1970-01-01T00:00:00Z\"\n");
}

TEST(FileListCsv, WritesWholeOrNotAtAll) {
    test::TempDir dir;
    const auto root = folder(nullptr, dir.path());
    const auto movie = file(root, "movie.mov", 1'000'000, FileKind::video, StorageBucket::video);

    const std::string target = dir / "list.csv";
    ASSERT_TRUE(writeFileListCsv(target, {movie}));
    EXPECT_EQ(test::readText(target), fileListCsv({movie}));

    // Under a file, no folder can be made, not even by root.
    EXPECT_FALSE(writeFileListCsv(target + "/list.csv", {movie}));
    EXPECT_EQ(test::readText(target), fileListCsv({movie}));
}

} // namespace
} // namespace dorvik
