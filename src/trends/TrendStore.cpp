#include "trends/TrendStore.h"

#include "platform/ApplicationSupport.h"
#include "platform/FileIO.h"
#include "platform/LockedFile.h"

#include <algorithm>

namespace dorvik {

namespace {

std::optional<std::string> readText(const std::string& path, size_t maxBytes) {
    const auto bytes = platform::readWholeFile(path, maxBytes);
    if (!bytes) {
        return std::nullopt;
    }
    return std::string(bytes->begin(), bytes->end());
}

std::optional<std::vector<ScanSnapshot>> decodeSnapshots(const std::optional<std::string>& text) {
    return text ? TrendFiles::decodeSnapshots(*text) : std::nullopt;
}

std::optional<std::vector<SpaceSample>> decodeSamples(const std::optional<std::string>& text) {
    return text ? TrendFiles::decodeSamples(*text) : std::nullopt;
}

} // namespace

TrendStore::TrendStore(std::optional<std::string> directory)
    : directory_(directory ? std::move(*directory) : platform::applicationSupportDirectory()) {
    platform::makePrivateFolder(directory_);
    reload();
}

std::string TrendStore::snapshotsPath() const {
    return directory_ + "/" + std::string(TrendFiles::snapshotsFileName);
}

std::string TrendStore::samplesPath() const {
    return directory_ + "/" + std::string(TrendFiles::samplesFileName);
}

bool TrendStore::reload() {
    auto snapshots = decodeSnapshots(readText(snapshotsPath(), TrendFiles::maximumSnapshotsBytes))
                         .value_or(std::vector<ScanSnapshot>{});
    auto samples = decodeSamples(readText(samplesPath(), TrendFiles::maximumSamplesBytes))
                       .value_or(std::vector<SpaceSample>{});
    const bool changed = snapshots != snapshots_ || samples != samples_;
    snapshots_ = std::move(snapshots);
    samples_ = std::move(samples);
    return changed;
}

void TrendStore::record(ScanSnapshot snapshot) {
    const platform::LockedFile file(snapshotsPath());
    if (auto current = decodeSnapshots(file.read(TrendFiles::maximumSnapshotsBytes))) {
        snapshots_ = std::move(*current);
    }
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
    while (snapshots_.size() > maximumSnapshots) {
        snapshots_.erase(std::min_element(
            snapshots_.begin(), snapshots_.end(),
            [](const ScanSnapshot& a, const ScanSnapshot& b) { return a.date < b.date; }));
    }
    file.write(TrendFiles::encodeSnapshots(snapshots_));
}

void TrendStore::recordSample(const std::optional<VolumeInfo>& volume, double now) {
    if (!volume) {
        return;
    }
    const platform::LockedFile file(samplesPath());
    if (auto current = decodeSamples(file.read(TrendFiles::maximumSamplesBytes))) {
        samples_ = std::move(*current);
    }
    if (!samples_.empty() && now - samples_.back().date < sampleSpacing) {
        return;
    }
    samples_.push_back({now, volume->total - volume->available, volume->total});
    std::erase_if(samples_,
                  [now](const SpaceSample& sample) { return now - sample.date > sampleAgeLimit; });
    if (samples_.size() > TrendFiles::maximumSamples) {
        samples_.erase(samples_.begin(),
                       samples_.end() - static_cast<std::ptrdiff_t>(TrendFiles::maximumSamples));
    }
    file.write(TrendFiles::encodeSamples(samples_));
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
