#include "scanning/FileFilter.h"

#include "platform/CaseFolding.h"
#include "scanning/ScanPaths.h"
#include "system/Dates.h"

#include <utility>

namespace dorvik {

bool FileFilter::matches(const FileNode& node, double now) const {
    return FileFilterMatcher(*this)(node, now);
}

FileFilterMatcher::FileFilterMatcher(FileFilter filter)
    : filter_(std::move(filter)), foldedQuery_(platform::foldedCase(filter_.query)),
      queryIsPath_(filter_.query.find('/') != std::string::npos) {}

bool FileFilterMatcher::operator()(const FileNode& node, double now) const {
    if (node.size < filter_.minSize) {
        return false;
    }
    if (!filter_.kinds.empty() && !filter_.kinds.contains(node.kind)) {
        return false;
    }
    if (filter_.bucket && *filter_.bucket != node.bucket) {
        return false;
    }
    if (filter_.modifiedOlderThanDays) {
        // Changed exactly at the cutoff still counts as old enough.
        const double cutoff = now - *filter_.modifiedOlderThanDays * Dates::secondsPerDay;
        if (cutoff < node.modified) {
            return false;
        }
    }
    std::string path;
    if ((!filter_.query.empty() && queryIsPath_) || filter_.pathPrefix) {
        path = canonicalPathOf(node);
    }
    if (!filter_.query.empty()) {
        if (!queryIsPath_) {
            folded_.clear();
            platform::appendFoldedCase(node.name, folded_);
        }
        if (!platform::containsFolded(folded_, foldedQuery_)) {
            return false;
        }
    }
    if (filter_.pathPrefix && !path.starts_with(*filter_.pathPrefix)) {
        return false;
    }
    return true;
}

const FileFilterMatcher::FolderPath& FileFilterMatcher::folderPath(const FileNode& folder) const {
    auto found = folderPaths_.find(&folder);
    if (found == folderPaths_.end()) {
        FolderPath made{canonicalPath(folder.path()), {}};
        if (!made.canonical.ends_with('/')) {
            made.canonical += '/';
        }
        if (queryIsPath_) {
            made.folded = platform::foldedCase(made.canonical);
        }
        found = folderPaths_.emplace(&folder, std::move(made)).first;
    }
    return found->second;
}

std::string FileFilterMatcher::canonicalPathOf(const FileNode& node) const {
    folded_.clear();
    const FileNodePtr parent = node.parent.lock();
    std::string path;
    if (parent == nullptr) {
        path = canonicalPath(node.path());
        platform::appendFoldedCase(path, folded_);
        return path;
    }
    // A file's path is its folder's, canonical already, and its name: the data volume's prefix
    // is a folder's, never a file's.
    const FolderPath& folder = folderPath(*parent);
    path = folder.canonical + node.name;
    if (queryIsPath_) {
        folded_ = folder.folded;
        platform::appendFoldedCase(node.name, folded_);
    }
    return path;
}

std::vector<FileNodePtr> filterFiles(const std::vector<FileNodePtr>& files,
                                     const FileFilter& filter, double now) {
    const FileFilterMatcher matches(filter);
    std::vector<FileNodePtr> passed;
    passed.reserve(files.size());
    for (const auto& file : files) {
        if (!file->deleted && matches(*file, now)) {
            passed.push_back(file);
        }
    }
    return passed;
}

} // namespace dorvik
