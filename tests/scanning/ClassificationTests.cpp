#include "base/PathNames.h"
#include "scanning/Classification.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// The bucket each directory on the way down would get, walking from the scan's root (the whole
// disk of a Mac by default) with the same inheritance the scanner uses.
std::optional<StorageBucket> bucketOfPath(std::string_view path, ScanContext context = {}) {
    const auto parts = pathPieces(path);
    std::optional<StorageBucket> bucket;
    for (size_t depth = std::max<size_t>(context.rootDepth, 1); depth <= parts.size(); ++depth) {
        std::optional<StorageBucket> inherited = bucket;
        if (inherited == StorageBucket::other) {
            inherited.reset();
        }
        bucket =
            directoryBucket(std::span(parts.data(), depth), parts[depth - 1], inherited, context)
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
        {"/home/ann/Library/Caches", B::other}, // a Linux home has no Library of the Mac's
        {"/Foo.APP", B::other},                 // suffixes are case-sensitive
    };
    for (const auto& [path, bucket] : cases) {
        EXPECT_EQ(bucketOfPath(path), bucket) << path;
    }
}

TEST(Classification, LinuxPlacesAlongRealPaths) {
    using B = StorageBucket;
    const struct {
        std::string path;
        StorageBucket bucket;
    } cases[] = {
        // the system, packages' own bytecode and modules included
        {"/usr", B::system},
        {"/usr/bin", B::system},
        {"/usr/lib/python3/dist-packages/yaml/__pycache__", B::system},
        {"/usr/lib/node_modules/npm", B::system},
        {"/usr/share/go", B::system},
        {"/bin", B::system},
        {"/sbin", B::system},
        {"/lib/modules/6.1.0", B::system},
        {"/lib64", B::system},
        {"/boot/grub", B::system},
        {"/etc/ssh", B::system},
        {"/var/lib/dpkg", B::system},
        {"/var/log/journal", B::system},
        // the Mac's rows where no Linux row speaks
        {"/usr/local/cuda/bin", B::developer},
        {"/usr/local/lib/node_modules", B::developer},
        {"/private/var/log", B::junk},
        {"/Users/ann/Library/Caches", B::junk},
        // installed applications, containers, caches and temporary files
        {"/opt/google/chrome", B::applications},
        {"/opt/app/resources/node_modules", B::applications},
        {"/snap/firefox/4090", B::applications},
        {"/var/lib/snapd/snaps", B::applications},
        {"/var/lib/flatpak/app/org.gimp.GIMP", B::applications},
        {"/var/lib/docker/overlay2", B::developer},
        {"/var/lib/containers/storage", B::developer},
        {"/var/cache/apt/archives", B::junk},
        {"/var/tmp/build", B::junk},
        {"/tmp/unpacked", B::junk},
        {"/tmp/unpacked/node_modules", B::junk},
        // places no row knows
        {"/var", B::other},
        {"/var/spool", B::other},
        {"/srv/www", B::other},
        {"/home", B::other},
        {"/usrx/lib", B::other},
        {"/tmpfiles", B::other},
        // homes
        {"/home/ann", B::other},
        {"/home/ann/.cache", B::junk},
        {"/home/ann/.cache/go-build", B::junk},
        {"/home/ann/.local", B::other},
        {"/home/ann/.local/bin", B::other},
        {"/home/ann/.local/share", B::appData},
        {"/home/ann/.local/share/fonts", B::appData},
        {"/home/ann/.local/share/Trash", B::trash},
        {"/home/ann/.local/share/Trash/files/node_modules", B::trash},
        {"/home/ann/.local/share/Trash/files/Old.app", B::applications},
        {"/home/ann/.config/Code/User", B::appData},
        {"/home/ann/.config/go", B::developer},
        {"/home/ann/.var/app/org.gimp.GIMP/data", B::appData},
        {"/home/ann/.var/cache", B::other},
        {"/home/ann/snap/firefox/common", B::applications},
        {"/home/ann/Documents", B::other},
        {"/home/ann/Applications/Tool.app", B::applications},
        {"/home/ann/projects/site/node_modules", B::developer},
        {"/home/ann/.Trash", B::other}, // a Mac's Trash, not a Linux home's
        {"/root", B::other},
        {"/root/.cache/pip", B::junk},
        {"/root/.local/share/Trash/files", B::trash},
        {"/root/.config/htop", B::appData},
        {"/rooted/.cache", B::other},
    };
    for (const auto& [path, bucket] : cases) {
        EXPECT_EQ(bucketOfPath(path, {DiskLayout::linuxDesktop}), bucket) << path;
    }
}

// Where a Mac's rows and a Linux system's both know a place, a Mac's disk keeps the Mac's answer.
TEST(Classification, AMacsDiskKeepsTheMacsAnswers) {
    using B = StorageBucket;
    const struct {
        std::string path;
        StorageBucket mac;
        StorageBucket onLinux;
    } cases[] = {
        {"/opt", B::developer, B::applications}, {"/opt/local/bin", B::developer, B::applications},
        {"/usr/bin", B::developer, B::system},   {"/usr/local/bin", B::developer, B::developer},
        {"/tmp/x", B::other, B::junk},           {"/home/ann/.cache", B::other, B::junk},
    };
    for (const auto& [path, mac, onLinux] : cases) {
        EXPECT_EQ(bucketOfPath(path), mac) << path;
        EXPECT_EQ(bucketOfPath(path, {DiskLayout::linuxDesktop}), onLinux) << path;
    }
}

// A scan that begins inside a temporary folder looks at what the folder holds; one that reaches
// the temporary folder from above sees temporary files. Other places decide wherever the scan
// began.
TEST(Classification, TemporaryFoldersCountAsJunkOnlyFromAbove) {
    using B = StorageBucket;
    const struct {
        std::string path;
        size_t rootDepth;
        StorageBucket bucket;
    } cases[] = {
        {"/tmp/unpacked/photos", 0, B::junk},
        {"/tmp/unpacked/photos", 1, B::junk},
        {"/tmp/unpacked/photos", 2, B::other},
        {"/tmp/unpacked/node_modules", 2, B::developer},
        {"/tmp/unpacked/Photos.photoslibrary", 2, B::images},
        {"/var/tmp/build/out", 1, B::junk},
        {"/var/tmp/build/out", 2, B::junk},
        {"/var/tmp/build/out", 3, B::other},
        {"/var/cache/apt/archives", 3, B::junk},
        {"/usr/share/icons/hicolor", 2, B::system},
        {"/home/ann/.cache/pip/http", 3, B::junk},
        {"/private/tmp/x/y", 3, B::junk},
    };
    for (const auto& [path, rootDepth, bucket] : cases) {
        EXPECT_EQ(bucketOfPath(path, {DiskLayout::linuxDesktop, rootDepth}), bucket)
            << path << " from depth " << rootDepth;
    }
}

// The user's own home is a home wherever it lies; another folder there is not.
TEST(Classification, TheUsersOwnHomeWhereverItLies) {
    using B = StorageBucket;
    const std::vector<std::string_view> silverblue = {"var", "home", "ann"};
    const std::vector<std::string_view> scratch = {"tmp", "session", "home"};
    const struct {
        std::string path;
        std::span<const std::string_view> home;
        size_t rootDepth;
        StorageBucket bucket;
    } cases[] = {
        {"/var/home/ann/.cache/pip", silverblue, 0, B::junk},
        {"/var/home/ann/.local/share/Trash/files", silverblue, 3, B::trash},
        {"/var/home/ann/.config/app", silverblue, 3, B::appData},
        {"/var/home/bob/.cache", silverblue, 0, B::other},
        {"/var/home/ann/.cache", {}, 0, B::other},
        {"/tmp/session/home/.cache/app", scratch, 3, B::junk},
        {"/tmp/session/home/Documents", scratch, 3, B::other},
        {"/home/bob/.cache", silverblue, 0, B::junk},
    };
    for (const auto& [path, home, rootDepth, bucket] : cases) {
        EXPECT_EQ(bucketOfPath(path, {DiskLayout::linuxDesktop, rootDepth, home}), bucket) << path;
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
