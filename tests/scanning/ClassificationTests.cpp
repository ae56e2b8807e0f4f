#include "scanning/Classification.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dorvik {
namespace {

using namespace Classification;

TEST(Classification, ExtensionTableHoldsEveryListedWordOnce) {
    const auto& table = extensionTable();
    EXPECT_EQ(table.size(), 183u);
    size_t longest = 0;
    for (const auto& [extension, kind] : table) {
        longest = std::max(longest, extension.size());
    }
    EXPECT_EQ(longest, 12u);
    EXPECT_EQ(table.at("exs"), FileKind::code); // in the audio list and the later code list
    EXPECT_EQ(packageExtensions().size(), 32u);
    EXPECT_EQ(developerFolderNames().size(), 23u);
}

TEST(Classification, FileKindOfName) {
    const struct {
        std::string name;
        FileKind kind;
    } cases[] = {
        {"archive.tar.gz", FileKind::archive}, // the last extension decides
        {"README", FileKind::other},
        {".gitignore", FileKind::other}, // a leading dot is no extension
        {".config.json", FileKind::document},
        {"a.", FileKind::other},
        {"a", FileKind::other},
        {"", FileKind::other},
        {".", FileKind::other},
        {"x.c", FileKind::code},
        {"PHOTO.JPG", FileKind::image},
        {"Movie.MoV", FileKind::video},
        {"song.exs", FileKind::code},
        {"x.averyverylongext", FileKind::other}, // 16 characters after the dot
        {"x.sparseimage", FileKind::diskImage},  // 11
        {"x.sparsebundle", FileKind::diskImage}, // 12, the longest
        {"x.sparsebundlex", FileKind::other},
        {"report.pdf.part", FileKind::other},
        {"x.app", FileKind::other}, // ".app" names a directory kind only
        {"libfoo.so", FileKind::code},
        {"disk.qcow2", FileKind::diskImage},
        {"photo.j\xc3\xa9g", FileKind::other}, // not ASCII
    };
    for (const auto& [name, kind] : cases) {
        EXPECT_EQ(fileKindOfName(name), kind) << name;
    }
}

TEST(Classification, DirectoryKindAndPackages) {
    EXPECT_EQ(directoryKindOfName("Safari.app"), FileKind::application);
    EXPECT_EQ(directoryKindOfName("Foo.APP"), FileKind::other);
    EXPECT_EQ(directoryKindOfName(".app"), FileKind::application);
    const struct {
        std::string name;
        bool package;
    } cases[] = {
        {"Safari.app", true},        {"Foo.APP", false},         {"Photos.photoslibrary", true},
        {"Window.savedState", true}, {"x.savedstate", false},    {"Plain", false},
        {"a.b.framework", true},     {"x.framework.old", false}, {"x.vst3", true},
    };
    for (const auto& [name, package] : cases) {
        EXPECT_EQ(isPackageName(name), package) << name;
    }
}

TEST(Classification, DefaultBucketOfEachKind) {
    const std::pair<FileKind, StorageBucket> cases[] = {
        {FileKind::document, StorageBucket::documents},
        {FileKind::image, StorageBucket::images},
        {FileKind::video, StorageBucket::video},
        {FileKind::audio, StorageBucket::audio},
        {FileKind::archive, StorageBucket::archives},
        {FileKind::diskImage, StorageBucket::archives},
        {FileKind::code, StorageBucket::documents},
        {FileKind::application, StorageBucket::applications},
        {FileKind::other, StorageBucket::other},
    };
    for (const auto& [kind, bucket] : cases) {
        EXPECT_EQ(defaultBucket(kind), bucket) << info(kind).caseName;
    }
}

std::vector<std::string_view> split(std::string_view path) {
    std::vector<std::string_view> parts;
    size_t start = 0;
    while (start < path.size()) {
        size_t end = path.find('/', start);
        if (end == std::string_view::npos) {
            end = path.size();
        }
        if (end > start) {
            parts.push_back(path.substr(start, end - start));
        }
        start = end + 1;
    }
    return parts;
}

// The bucket each directory on the way down would get, walking from the first component with
// the same inheritance the scanner uses.
std::optional<StorageBucket> bucketOfPath(std::string_view path) {
    const auto parts = split(path);
    std::optional<StorageBucket> bucket;
    for (size_t depth = 1; depth <= parts.size(); ++depth) {
        std::optional<StorageBucket> inherited = bucket;
        if (inherited == StorageBucket::other) {
            inherited.reset();
        }
        bucket = directoryBucket(std::span(parts.data(), depth), parts[depth - 1], inherited)
                     .value_or(StorageBucket::other);
    }
    return bucket;
}

TEST(Classification, DirectoryBucketAlongRealPaths) {
    using B = StorageBucket;
    const struct {
        std::string path;
        StorageBucket bucket;
    } cases[] = {
        {"/Users/ann/Library", B::appData},
        {"/Users/ann/Library/Caches", B::junk},
        {"/Users/ann/Library/Caches/com.example/x", B::junk},
        {"/Users/ann/Library/Logs/DiagnosticReports", B::junk},
        {"/Users/ann/Library/HTTPStorages", B::junk},
        {"/Users/ann/Library/Saved Application State", B::junk},
        {"/Users/ann/Library/Developer/Xcode", B::developer},
        {"/Users/ann/Library/Mail", B::other},
        {"/Users/ann/Library/Mail/V10", B::other},
        {"/Users/ann/Library/Mobile Documents", B::other},
        {"/Users/ann/Library/Application Support/Foo", B::appData},
        {"/Users/ann/Library/Application Support/go", B::developer},
        {"/Users/ann/.Trash", B::trash},
        {"/Users/ann/.Trash/node_modules", B::trash},
        {"/Users/ann/.Trash/Old.app", B::applications},
        {"/Users/ann/.Trash/Old.app/Contents", B::applications},
        {"/Users/ann/project/node_modules", B::developer},
        {"/Users/ann/project/node_modules/x/Library", B::developer},
        {"/Users/ann/project/go", B::developer},
        {"/Users/ann/Documents", B::other},
        {"/Users/ann/Applications/Tool.app", B::applications},
        {"/Users/ann/Music/Song.band", B::audio},
        {"/Users/ann/Pictures/Photos Library.photoslibrary", B::images},
        {"/Users/ann/Movies/Cut.fcpbundle", B::video},
        {"/Users/ann/Archives/App.xcarchive", B::developer},
        {"/Users/ann/Library/Containers/x/Data/Library/Caches", B::appData},
        {"/Applications/Safari.app", B::applications},
        {"/Applications/Utilities", B::other},
        {"/Library", B::system},
        {"/Library/Caches", B::junk},
        {"/Library/Logs/x", B::junk},
        {"/Library/Developer/CommandLineTools", B::developer},
        {"/Library/Fonts", B::system},
        {"/private", B::system},
        {"/private/tmp/x", B::junk},
        {"/private/var/folders/aa", B::junk},
        {"/private/var/log", B::junk},
        {"/private/var/db", B::system},
        {"/private/var", B::system},
        {"/opt/homebrew", B::developer},
        {"/usr/local", B::developer},
        {"/System/Library", B::system},
        {"/cores", B::system},
        {"/.Spotlight-V100", B::system},
        {"/MobileSoftwareUpdate", B::system},
        {"/Volumes/Backup", B::other},
        {"/home/ann/Library/Caches", B::other}, // only the macOS layout is known
        {"/Foo.APP", B::other},                 // suffixes are case-sensitive
    };
    for (const auto& [path, bucket] : cases) {
        EXPECT_EQ(bucketOfPath(path), bucket) << path;
    }
}

TEST(Classification, DirectoryBucketAtTheRootAndWithoutComponents) {
    EXPECT_EQ(directoryBucket({}, "/", std::nullopt), std::nullopt);
    EXPECT_EQ(directoryBucket({}, "/", StorageBucket::appData), StorageBucket::appData);
    EXPECT_EQ(directoryBucket({}, "node_modules", std::nullopt), StorageBucket::developer);
    // System and App Data are refined below; the others are kept.
    const std::string_view users[] = {"Users", "ann", "Library", "Caches"};
    EXPECT_EQ(directoryBucket(users, "Caches", StorageBucket::system), StorageBucket::junk);
    EXPECT_EQ(directoryBucket(users, "Caches", StorageBucket::video), StorageBucket::video);
}

TEST(Classification, RawValuesAndCaseNames) {
    EXPECT_EQ(fileKindFromRaw(5), FileKind::diskImage);
    EXPECT_EQ(fileKindFromRaw(9), std::nullopt);
    EXPECT_EQ(storageBucketFromRaw(11), StorageBucket::other);
    EXPECT_EQ(storageBucketFromRaw(12), std::nullopt);
    for (FileKind kind : allFileKinds) {
        EXPECT_EQ(fileKindFromCaseName(info(kind).caseName), kind);
    }
    for (StorageBucket bucket : allStorageBuckets) {
        EXPECT_EQ(storageBucketFromCaseName(info(bucket).caseName), bucket);
    }
    EXPECT_EQ(info(StorageBucket::junk).displayName, "Caches & Temporary Files");
    EXPECT_EQ(info(FileKind::diskImage).colour, "#FF9F43");
}

} // namespace
} // namespace dorvik
