#pragma once

// The labels every scanned item gets: a file's kind from its extension, and a directory's bucket
// from where it stands. Pure logic over names; nothing here touches the disk.

#include "scanning/FileKind.h"
#include "scanning/StorageBucket.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace dorvik::Classification {

// Lower-case extension to kind. Built once, on first use.
const std::unordered_map<std::string_view, FileKind>& extensionTable();

// Directory extensions that make a package ("app", "photoslibrary", …), compared exactly.
const std::unordered_set<std::string_view>& packageExtensions();

// Folder names that hold developer material wherever they stand ("node_modules", …).
const std::unordered_set<std::string_view>& developerFolderNames();

// The kind of a file from the raw bytes of its name. Called once for every file of a disk, so it
// rejects names without a usable extension before anything is allocated.
FileKind fileKindOfName(const char* name, size_t length);
inline FileKind fileKindOfName(std::string_view name) {
    return fileKindOfName(name.data(), name.size());
}

// `application` for a name that ends in ".app" (case-sensitive), `other` otherwise.
FileKind directoryKindOfName(std::string_view name);

// Whether a directory of this name is a package: the text after its last "." is a package
// extension. A name without a "." is no package.
bool isPackageName(std::string_view name);

StorageBucket defaultBucket(FileKind kind);

// How a disk is laid out: the Mac's places alone, or a Linux system's with the Mac's beside them.
// Where both know a place (/opt, /usr), a Mac's disk keeps the Mac's answer.
enum class DiskLayout { mac, linuxDesktop };

// What a directory's place means depends on the disk and on where the scan began.
struct ScanContext {
    DiskLayout layout = DiskLayout::mac;
    // The number of components of the scan's root, 0 for the whole disk. A scan that begins inside
    // a temporary folder looks at what it holds rather than calling it all temporary.
    size_t rootDepth = 0;
    // The components of the user's own home folder, a home wherever it lies (besides /home/<name>
    // and /root); empty when unknown.
    std::span<const std::string_view> home = {};
};

// The bucket of a directory. `components` is its canonical path split at "/" with empty pieces
// dropped; `inherited` is its parent's bucket, or none where the parent is `other` or absent.
// None means nothing is known of the place, and its files decide by their kind.
std::optional<StorageBucket> directoryBucket(std::span<const std::string_view> components,
                                             std::string_view name,
                                             std::optional<StorageBucket> inherited,
                                             ScanContext context = {});

} // namespace dorvik::Classification
