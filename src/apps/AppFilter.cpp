#include "apps/AppFilter.h"

#include "platform/CaseFolding.h"

namespace dorvik {

namespace {

bool found(std::string_view text, const std::u32string& query) {
    return platform::containsFolded(platform::foldedCase(text), query);
}

} // namespace

bool keeps(const AppFilter& filter, const InstalledApp& app, double now) {
    if (filter.hideApple && app.isApple) {
        return false;
    }
    if (filter.unusedOnly && app.lastUsed && now - *app.lastUsed <= unusedAfterSeconds) {
        return false;
    }
    if (filter.search.empty()) {
        return true;
    }
    const std::u32string query = platform::foldedCase(filter.search);
    return found(app.name, query) || (app.bundleID && found(*app.bundleID, query));
}

std::vector<InstalledApp> filtered(const std::vector<InstalledApp>& apps, const AppFilter& filter,
                                   double now) {
    std::vector<InstalledApp> kept;
    for (const InstalledApp& app : apps) {
        if (keeps(filter, app, now)) {
            kept.push_back(app);
        }
    }
    return kept;
}

} // namespace dorvik
