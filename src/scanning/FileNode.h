#pragma once

// One directory, or one file big enough to matter, of a scanned tree. The tree is owned from the
// root down through `children`; `parent` is weak, so a view that still holds a node of an old tree
// keeps only that node alive. A node holds a name and numbers, never a path.

#include "scanning/FileKind.h"
#include "scanning/StorageBucket.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace dorvik {

class FileNode;
using FileNodePtr = std::shared_ptr<FileNode>;

// Files below this many allocated bytes get no node; they are counters on their directory.
inline constexpr int64_t largeFileThreshold = 524288;

class FileNode {
public:
    FileNode(std::string nodeName, bool directory, bool package, FileKind fileKind,
             StorageBucket storageBucket)
        : name(std::move(nodeName)), isDirectory(directory), isPackage(package), kind(fileKind),
          bucket(storageBucket) {}

    // Takes the tree below apart one node at a time: a chain of folders as deep as a disk or an
    // archive can make would overflow the stack if each node let go of its children itself.
    ~FileNode();

    FileNode(const FileNode&) = delete;
    FileNode& operator=(const FileNode&) = delete;

    // The last path component; for the root, the whole root path as it was walked.
    const std::string name;
    const bool isDirectory; // directories and packages
    const bool isPackage;
    const FileKind kind;

    std::weak_ptr<FileNode> parent;
    StorageBucket bucket;
    int64_t size = 0;        // allocated bytes; a directory's own blocks and all below it
    int64_t logicalSize = 0; // content length; a directory sums what lies below it
    int64_t fileCount = 0;
    double modified = 0; // seconds since 1970, whole seconds
    double accessed = 0;
    std::vector<FileNodePtr> children; // in the order the walk met them; never sorted in place
    int64_t smallFilesSize = 0;        // this directory's direct files that have no node
    int64_t smallFilesCount = 0;
    bool unreadable = false;
    bool deleted = false;

    // The real path on disk, rebuilt from the names up to the highest ancestor still alive.
    std::string path() const;

    // Appends `child` to `parent`'s children and points the child back at it.
    static void adopt(const FileNodePtr& parent, const FileNodePtr& child);
};

} // namespace dorvik
