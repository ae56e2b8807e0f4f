#include "scanning/FileFilter.h"

#include "base/Dates.h"
#include "base/PathNames.h"
#include "platform/CaseFolding.h"

#include <algorithm>
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
    if (!filter_.query.empty() && !queryIsPath_) {
        folded_.clear();
        platform::appendFoldedCase(node.name, folded_);
        if (!platform::containsFolded(folded_, foldedQuery_)) {
            return false;
        }
    }
    if ((filter_.query.empty() || !queryIsPath_) && !filter_.pathPrefix) {
        return true;
    }
    const FileNodePtr parent = node.parent.lock();
    if (parent == nullptr) {
        return pathMatches(canonicalPath(node.path()));
    }
    // A file's path is its folder's, canonical already, and its name: the data volume's prefix
    // is a folder's, never a file's. So the folder's part is looked at once for all its files.
    const FolderPath& folder = folderPath(*parent);
    if (!filter_.query.empty() && !folder.holdsQuery) {
        // Only a match that takes in some of the name is left to find.
        folded_ = folder.foldedTail;
        platform::appendFoldedCase(node.name, folded_);
        if (!platform::containsFolded(folded_, foldedQuery_)) {
            return false;
        }
    }
    if (filter_.pathPrefix) {
        const std::string& prefix = *filter_.pathPrefix;
        const std::string& start = folder.canonical;
        if (prefix.size() <= start.size()) {
            return start.starts_with(prefix);
        }
        return prefix.starts_with(start) && std::string_view(node.name).starts_with(
                                                std::string_view(prefix).substr(start.size()));
    }
    return true;
}

bool FileFilterMatcher::pathMatches(const std::string& path) const {
    if (!filter_.query.empty() &&
        !platform::containsFolded(platform::foldedCase(path), foldedQuery_)) {
        return false;
    }
    return !filter_.pathPrefix || path.starts_with(*filter_.pathPrefix);
}

const FileFilterMatcher::FolderPath& FileFilterMatcher::folderPath(const FileNode& folder) const {
    auto found = folderPaths_.find(&folder);
    if (found == folderPaths_.end()) {
        FolderPath made{canonicalPath(folder.path()), {}, false};
        if (!made.canonical.ends_with('/')) {
            made.canonical += '/';
        }
        if (queryIsPath_) {
            const std::u32string folded = platform::foldedCase(made.canonical);
            made.holdsQuery = platform::containsFolded(folded, foldedQuery_);
            const size_t tail = std::min(folded.size(), foldedQuery_.size() - 1);
            made.foldedTail = folded.substr(folded.size() - tail);
        }
        found = folderPaths_.emplace(&folder, std::move(made)).first;
    }
    return found->second;
}

std::vector<FileNodePtr> filterFiles(const std::vector<FileNodePtr>& files,
                                     const FileFilter& filter, double now) {
    const FileFilterMatcher matches(filter);
    std::vector<FileNodePtr> passed;
    passed.reserve(files.size());
    // The nodes lie all over memory: asking for those a few ahead lets their loads overlap.
    constexpr size_t ahead = 16;
    for (size_t i = 0; i < files.size(); ++i) {
        if (i + ahead < files.size()) {
            __builtin_prefetch(files[i + ahead].get());
        }
        const FileNodePtr& file = files[i];
        if (!file->deleted && matches(*file, now)) {
            passed.push_back(file);
        }
    }
    return passed;
}

} // namespace dorvik
