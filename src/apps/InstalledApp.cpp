#include "apps/InstalledApp.h"

#include <algorithm>
#include <numeric>

namespace dorvik {

namespace {

int64_t sizeOf(const std::vector<RelatedItem>& items) {
    return std::accumulate(items.begin(), items.end(), int64_t{0},
                           [](int64_t sum, const RelatedItem& item) { return sum + item.size; });
}

} // namespace

int64_t InstalledApp::relatedSize() const {
    return sizeOf(related);
}

int64_t RemovedApp::itemsSize() const {
    return sizeOf(items);
}

bool isRunning(const InstalledApp& app, const std::vector<std::string>& runningIdentifiers) {
    return app.bundleID &&
           std::ranges::find(runningIdentifiers, *app.bundleID) != runningIdentifiers.end();
}

} // namespace dorvik
