#include "trends/TrendStore.h"

#include "platform/ApplicationSupport.h"
#include "platform/FileIO.h"
#include "trends/TrendFiles.h"

#include <algorithm>
#include <filesystem>

namespace dorvik {

namespace {

// Far above what 30 snapshots a root can fill; a larger file is not ours.
constexpr size_t largestTrendFile = 256u << 20;

std::string readText(const std::string& path) {
    const auto bytes = platform::readWholeFile(path, largestTrendFile);
    return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
}

} // namespace

TrendStore::TrendStore(std::optional<std::string> directory)
    : directory_(directory ? std::move(*directory) : platform::applicationSupportDirectory()) {
    std::error_code ignored;
    std::filesystem::create_directories(directory_, ignored);
    snapshots_ = TrendFiles::decodeSnapshots(
                     readText(directory_ + "/" + std::string(TrendFiles::snapshotsFileName)))
                     .value_or(std::vector<ScanSnapshot>{});
    samples_ = TrendFiles::decodeSamples(
                   readText(directory_ + "/" + std::string(TrendFiles::samplesFileName)))
                   .value_or(std::vector<SpaceSample>{});
}

void TrendStore::record(ScanSnapshot snapshot) {
    const auto earlier = history(snapshot.root);
    if (!earlier.empty() && snapshot.date - earlier.front().date < replaceInterval) {
        removeSnapshots({earlier.front().id});
    }
    const std::string root = snapshot.root;
    snapshots_.push_back(std::move(snapshot));
    const auto kept = history(root);
    if (kept.size() > snapshotsPerRoot) {
        std::vector<std::string> oldest;
        for (size_t i = snapshotsPerRoot; i < kept.size(); ++i) {
            oldest.push_back(kept[i].id);
        }
        removeSnapshots(oldest);
    }
    platform::writeFileAtomically(directory_ + "/" + std::string(TrendFiles::snapshotsFileName),
                                  TrendFiles::encodeSnapshots(snapshots_));
}

void TrendStore::recordSample(const std::optional<VolumeInfo>& volume, double now) {
    if (!volume) {
        return;
    }
    if (!samples_.empty() && now - samples_.back().date < sampleSpacing) {
        return;
    }
    samples_.push_back({now, volume->total - volume->available, volume->total});
    std::erase_if(samples_,
                  [now](const SpaceSample& sample) { return now - sample.date > sampleAgeLimit; });
    platform::writeFileAtomically(directory_ + "/" + std::string(TrendFiles::samplesFileName),
                                  TrendFiles::encodeSamples(samples_));
}

std::vector<ScanSnapshot> TrendStore::history(const std::string& root) const {
    std::vector<ScanSnapshot> result;
    for (const ScanSnapshot& snapshot : snapshots_) {
        if (snapshot.root == root) {
            result.push_back(snapshot);
        }
    }
    std::stable_sort(result.begin(), result.end(),
                     [](const ScanSnapshot& a, const ScanSnapshot& b) { return a.date > b.date; });
    return result;
}

std::optional<std::string> TrendStore::latestRoot() const {
    const auto newest = std::max_element(
        snapshots_.begin(), snapshots_.end(),
        [](const ScanSnapshot& a, const ScanSnapshot& b) { return a.date < b.date; });
    if (newest == snapshots_.end()) {
        return std::nullopt;
    }
    return newest->root;
}

void TrendStore::removeSnapshots(const std::vector<std::string>& ids) {
    std::erase_if(snapshots_, [&ids](const ScanSnapshot& snapshot) {
        return std::find(ids.begin(), ids.end(), snapshot.id) != ids.end();
    });
}

} // namespace dorvik
