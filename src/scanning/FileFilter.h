#pragma once

// The predicate of the file lists: which scanned files a list shows. The number fields are tested
// first and a path is only built when the query or the folder needs one, so that filtering
// hundreds of thousands of files stays quick.

#include "scanning/FileKind.h"
#include "scanning/FileNode.h"
#include "scanning/StorageBucket.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace dorvik {

struct FileFilter {
    std::string query;        // a "/" in it searches whole paths, otherwise names
    std::set<FileKind> kinds; // empty allows every kind
    std::optional<StorageBucket> bucket;
    int64_t minSize = 0;
    std::optional<int> modifiedOlderThanDays;
    std::optional<std::string> pathPrefix; // a canonical folder path, compared as plain text
    bool hideProtected = false;            // travels with the filter; matching leaves it alone

    bool operator==(const FileFilter&) const = default;

    // `now` is seconds since 1970.
    bool matches(const FileNode& node, double now) const;
};

// A filter made ready for many nodes: the query is folded to lower case once, and the path of
// each folder is built once for all the files in it.
class FileFilterMatcher {
public:
    explicit FileFilterMatcher(FileFilter filter);

    bool operator()(const FileNode& node, double now) const;

private:
    struct FolderPath {
        std::string canonical; // ends with "/"
        // For a query on paths: the end of the folded path where a match running into a file's
        // name may start, and whether the folder's path holds a match of its own.
        std::u32string foldedTail;
        bool holdsQuery;
    };
    const FolderPath& folderPath(const FileNode& folder) const;
    // The query on paths and the folder prefix, for a node with no parent.
    bool pathMatches(const std::string& path) const;

    FileFilter filter_;
    mutable std::unordered_map<const FileNode*, FolderPath> folderPaths_;
    mutable std::u32string folded_; // one buffer for every text folded
    std::u32string foldedQuery_;
    bool queryIsPath_;
};

// The files still there (not `deleted`) that pass the filter, in the order given.
std::vector<FileNodePtr> filterFiles(const std::vector<FileNodePtr>& files,
                                     const FileFilter& filter, double now);

} // namespace dorvik
