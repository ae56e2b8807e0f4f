#include "trends/SnapshotChanges.h"

#include "base/PathNames.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>

namespace dorvik {

namespace {

constexpr int64_t largest = std::numeric_limits<int64_t>::max();

int64_t clampedSum(int64_t a, int64_t b) {
    int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        return a > 0 ? largest : -largest;
    }
    return std::clamp(sum, -largest, largest);
}

int64_t magnitude(int64_t change) {
    return change < 0 ? -change : change; // changes never hold Int64's lowest value
}

int64_t sizeIn(const std::map<std::string, int64_t>& sizes, const std::string& key) {
    const auto found = sizes.find(key);
    return found == sizes.end() ? 0 : found->second;
}

template <typename Row> void sortByMagnitude(std::vector<Row>& rows, auto change) {
    std::stable_sort(rows.begin(), rows.end(), [&change](const Row& a, const Row& b) {
        return magnitude(change(a)) > magnitude(change(b));
    });
}

} // namespace

int64_t sizeChange(int64_t before, int64_t after) {
    int64_t difference = 0;
    if (__builtin_sub_overflow(after, before, &difference)) {
        return after > before ? largest : -largest;
    }
    return std::clamp(difference, -largest, largest);
}

std::vector<FolderChange> folderChanges(const ScanSnapshot& older, const ScanSnapshot& newer,
                                        int64_t threshold, size_t limit) {
    if (older.root != newer.root) {
        return {};
    }
    std::set<std::string> paths;
    for (const auto& [path, bytes] : older.folders) {
        paths.insert(path);
    }
    for (const auto& [path, bytes] : newer.folders) {
        paths.insert(path);
    }
    std::map<std::string, std::vector<std::string>> children;
    for (const std::string& path : paths) {
        std::string parent = parentPath(path);
        if (path != newer.root && parent != path) {
            children[std::move(parent)].push_back(path);
        }
    }
    const auto changeOf = [&](const std::string& path) {
        return sizeChange(sizeIn(older.folders, path), sizeIn(newer.folders, path));
    };

    // The descent, with an explicit stack so that no file can make it run out of stack. A folder
    // is visited before its significant children and finished after them, as a recursion would.
    struct Visit {
        std::string path;
        std::vector<std::string> significant; // set once the children are under way
        bool childrenVisited = false;
    };
    std::vector<FolderChange> rows;
    std::vector<Visit> visits{{newer.root, {}, false}};
    while (!visits.empty()) {
        if (visits.back().childrenVisited) {
            const Visit& visit = visits.back();
            int64_t rest = changeOf(visit.path);
            for (const std::string& child : visit.significant) {
                rest = clampedSum(rest, -changeOf(child));
            }
            if (magnitude(rest) >= threshold) {
                rows.push_back({visit.path, 0, rest, true});
            }
            visits.pop_back();
            continue;
        }
        std::vector<std::string> significant;
        if (const auto found = children.find(visits.back().path); found != children.end()) {
            for (const std::string& child : found->second) {
                if (magnitude(changeOf(child)) >= threshold) {
                    significant.push_back(child);
                }
            }
        }
        if (significant.empty()) {
            const std::string& path = visits.back().path;
            rows.push_back({path, sizeIn(older.folders, path), sizeIn(newer.folders, path), false});
            visits.pop_back();
            continue;
        }
        visits.back().childrenVisited = true;
        visits.back().significant = significant;
        for (auto child = significant.rbegin(); child != significant.rend(); ++child) {
            visits.push_back({*child, {}, false});
        }
    }

    std::erase_if(
        rows, [threshold](const FolderChange& row) { return magnitude(row.change()) < threshold; });
    sortByMagnitude(rows, [](const FolderChange& row) { return row.change(); });
    if (rows.size() > limit) {
        rows.resize(limit);
    }
    return rows;
}

std::vector<BucketChange> bucketChanges(const ScanSnapshot& older, const ScanSnapshot& newer,
                                        int64_t threshold) {
    std::vector<BucketChange> changes;
    for (StorageBucket bucket : allStorageBuckets) {
        const std::string key = bucketKey(bucket);
        const int64_t delta = sizeChange(sizeIn(older.buckets, key), sizeIn(newer.buckets, key));
        if (magnitude(delta) >= threshold) {
            changes.push_back({bucket, delta});
        }
    }
    sortByMagnitude(changes, [](const BucketChange& change) { return change.delta; });
    return changes;
}

std::optional<ComparedSnapshots> comparedSnapshots(const std::vector<ScanSnapshot>& history,
                                                   const std::optional<std::string>& baselineId) {
    if (history.size() < 2) {
        return std::nullopt;
    }
    const auto chosen = std::find_if(history.begin() + 1, history.end(),
                                     [&baselineId](const ScanSnapshot& snapshot) {
                                         return baselineId && snapshot.id == *baselineId;
                                     });
    return ComparedSnapshots{chosen == history.end() ? history[1] : *chosen, history.front()};
}

} // namespace dorvik
