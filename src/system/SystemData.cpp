#include "system/SystemData.h"

#include "base/ParallelEach.h"
#include "base/PathNames.h"
#include "platform/FileSystem.h"
#include "scanning/MeasureFolder.h"
#include "scanning/NodeLookup.h"

#include <algorithm>

namespace dorvik {

namespace {

// Each place's gross size (everything under its path, the places inside it included), measured
// by `concurrency` threads that take the places in turn.
std::vector<int64_t> grossSizes(const std::vector<std::string>& paths,
                                const std::vector<std::optional<int64_t>>& fromScan,
                                int concurrency) {
    std::vector<int64_t> sizes(paths.size(), 0);
    forEachIndexInParallel(paths.size(), concurrency, [&](size_t index) {
        sizes[index] = fromScan[index] ? *fromScan[index] : measureFolder(paths[index]).bytes;
    });
    return sizes;
}

// The places whose paths lie inside place `outer` and inside no other place that does: what
// `outer`'s gross size holds and its part must not count again.
std::vector<size_t> outermostInside(size_t outer, const std::vector<std::string>& paths) {
    std::vector<size_t> inside;
    for (size_t index = 0; index < paths.size(); ++index) {
        if (!isUnder(paths[index], paths[outer])) {
            continue;
        }
        const bool nested = std::ranges::any_of(paths, [&](const std::string& between) {
            return isUnder(paths[index], between) && isUnder(between, paths[outer]);
        });
        if (!nested) {
            inside.push_back(index);
        }
    }
    return inside;
}

} // namespace

std::string realPlacePath(const SystemDataPlace& place, const std::string& filesystemRoot) {
    std::string onDataVolume =
        filesystemRoot + std::string(dataVolumePath) + std::string(place.path);
    if (platform::pathExists(onDataVolume)) {
        return onDataVolume;
    }
    return filesystemRoot + std::string(place.path);
}

std::map<std::string, int64_t> sizesInScan(const FileNodePtr& root,
                                           const SystemDataOptions& options) {
    std::map<std::string, int64_t> sizes;
    for (const SystemDataPlace& place : options.places) {
        if (FileNodePtr node = findNode(root, options.filesystemRoot + std::string(place.path))) {
            sizes.emplace(place.id, node->size);
        }
    }
    return sizes;
}

std::vector<SystemDataPart> measureSystemData(const std::map<std::string, int64_t>& known,
                                              const SystemDataOptions& options) {
    const std::span<const SystemDataPlace> places = options.places;
    if (places.empty()) {
        return {};
    }
    std::vector<std::string> paths;
    std::vector<std::optional<int64_t>> fromScan;
    for (const SystemDataPlace& place : places) {
        paths.push_back(realPlacePath(place, options.filesystemRoot));
        const auto found = known.find(std::string(place.id));
        fromScan.push_back(found != known.end() ? std::optional(found->second) : std::nullopt);
    }
    const std::vector<int64_t> gross = grossSizes(paths, fromScan, options.concurrency);

    std::vector<SystemDataPart> parts;
    for (size_t index = 0; index < places.size(); ++index) {
        int64_t size = gross[index];
        // A hard link with names both inside and outside an inner place may make this a little
        // off; the walk counts such a file once, at the first name it meets.
        for (size_t inner : outermostInside(index, paths)) {
            size -= gross[inner];
        }
        if (size < 1) {
            continue;
        }
        const SystemDataPlace& place = places[index];
        parts.push_back({std::string(place.id), std::string(place.title),
                         std::string(place.explanation), std::string(place.advice), size,
                         paths[index], place.risk, std::string(place.symbol)});
    }
    std::ranges::stable_sort(
        parts, [](const SystemDataPart& a, const SystemDataPart& b) { return a.size > b.size; });
    return parts;
}

} // namespace dorvik
