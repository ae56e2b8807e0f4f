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
        path = canonicalPath(node.path());
    }
    if (!filter_.query.empty()) {
        const std::string_view searched = queryIsPath_ ? std::string_view(path) : node.name;
        if (!platform::containsFolded(platform::foldedCase(searched), foldedQuery_)) {
            return false;
        }
    }
    if (filter_.pathPrefix && !path.starts_with(*filter_.pathPrefix)) {
        return false;
    }
    return true;
}

std::vector<FileNodePtr> filterFiles(const std::vector<FileNodePtr>& files,
                                     const FileFilter& filter, double now) {
    const FileFilterMatcher matches(filter);
    std::vector<FileNodePtr> passed;
    for (const auto& file : files) {
        if (!file->deleted && matches(*file, now)) {
            passed.push_back(file);
        }
    }
    return passed;
}

} // namespace dorvik
