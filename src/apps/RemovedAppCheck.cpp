#include "apps/RemovedAppCheck.h"

#include "platform/Bundle.h"
#include "scanning/MeasureFolder.h"

#include <algorithm>
#include <set>

namespace dorvik::RemovedAppCheck {

Snapshot takeSnapshot(const std::vector<std::string>& bundlePaths) {
    Snapshot snapshot;
    for (const std::string& path : bundlePaths) {
        const auto info = platform::bundleInfoStrings(path);
        if (!info) {
            continue;
        }
        const auto identifier = info->find("CFBundleIdentifier");
        if (identifier == info->end() || identifier->second.empty() ||
            identifier->second.starts_with("com.apple.") ||
            identifier->second == platform::mainBundleIdentifier) {
            continue;
        }
        snapshot[path] = {AppInventory::appName(path, *info), identifier->second};
    }
    return snapshot;
}

Snapshot takeSnapshot() {
    return takeSnapshot(AppInventory::applicationPaths());
}

std::vector<GoneApp> goneApps(const Snapshot& before, const Snapshot& after,
                              const std::function<bool(const std::string&)>& knownToSystem) {
    std::set<std::string> stillThere;
    for (const auto& [path, app] : after) {
        stillThere.insert(app.bundleID);
    }
    std::vector<GoneApp> gone;
    for (const auto& [path, app] : before) {
        if (after.contains(path) || stillThere.contains(app.bundleID)) {
            continue;
        }
        // A snapshot that found nothing would make everything look gone; the system's own
        // answer stands behind it.
        if (knownToSystem(app.bundleID)) {
            continue;
        }
        gone.push_back({path, app});
    }
    return gone;
}

RemovedApp leftBehind(const GoneApp& gone, const std::vector<AppInventory::LibraryEntry>& entries,
                      const std::function<int64_t(const std::string&)>& measure) {
    RemovedApp removed{gone.app.name, gone.app.bundleID, {}};
    const std::string fileName = AppInventory::bundleFileName(gone.path);
    for (const AppInventory::LibraryEntry& entry : entries) {
        if (AppInventory::matches(entry.name, gone.app.bundleID, fileName)) {
            removed.items.push_back({entry.path, entry.label, measure(entry.path)});
        }
    }
    std::ranges::stable_sort(removed.items, std::greater{}, &RelatedItem::size);
    return removed;
}

bool isWorthReporting(const RemovedApp& removed) {
    return removed.itemsSize() >= smallestReport;
}

std::vector<RemovedApp> reports(const Snapshot& before, const Snapshot& after,
                                const Probes& probes) {
    const std::vector<GoneApp> gone = goneApps(before, after, probes.knownToSystem);
    if (gone.empty()) {
        return {};
    }
    const std::vector<AppInventory::LibraryEntry> entries = probes.libraryEntries();
    std::vector<RemovedApp> reported;
    for (const GoneApp& app : gone) {
        RemovedApp removed = leftBehind(app, entries, probes.measure);
        if (isWorthReporting(removed)) {
            reported.push_back(std::move(removed));
        }
    }
    return reported;
}

Probes systemProbes() {
    return {
        [](const std::string& bundleID) {
            return AppInventory::applicationWithIdentifier(bundleID).has_value();
        },
        [] { return AppInventory::libraryEntries(); },
        [](const std::string& path) { return measureFolder(path).bytes; },
    };
}

} // namespace dorvik::RemovedAppCheck
