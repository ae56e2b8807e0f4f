#include "state/AppsState.h"

#include "apps/AppInventory.h"
#include "apps/UninstallPlan.h"
#include "apps/UninstallRefusal.h"
#include "base/PathNames.h"
#include "platform/RunningApplications.h"
#include "scanning/WalkThreads.h"
#include "state/AppState.h"
#include "state/WorkerHandoff.h"

#include <algorithm>

namespace dorvik {

namespace {

bool wentWith(const std::string& path, const std::set<std::string>& removed) {
    return std::ranges::any_of(
        removed, [&path](const std::string& gone) { return isAtOrUnder(path, gone); });
}

// Whether anything in `removed` was the application's, or lay inside its bundle.
bool touches(const InstalledApp& app, const std::set<std::string>& removed) {
    if (wentWith(app.path, removed) ||
        std::ranges::any_of(removed,
                            [&app](const std::string& gone) { return isUnder(gone, app.path); })) {
        return true;
    }
    return std::ranges::any_of(
        app.related, [&removed](const RelatedItem& item) { return wentWith(item.path, removed); });
}

} // namespace

AppsState::AppsState(AppState& app)
    : app_(app), relay_(std::make_shared<MainThreadRelay<AppsState>>(this)) {
    connect(&app.removal(), &RemovalState::removed, this, &AppsState::followRemoval);
}

AppsState::~AppsState() {
    relay_->detach();
}

void AppsState::load() {
    if (apps_.empty()) {
        refresh();
    }
}

void AppsState::refresh() {
    if (appsLoading_) {
        return;
    }
    setAppsLoading(true);
    // Each bundle is measured on a thread of its own share of the machine.
    startOnWorker([relay = relay_] {
        std::vector<InstalledApp> apps = AppInventory::loadAll(machineThreads());
        relay->post([apps = std::move(apps)](AppsState& state) mutable {
            state.finishLoad(std::move(apps));
        });
    });
}

void AppsState::finishLoad(std::vector<InstalledApp> apps) {
    apps_ = std::move(apps);
    setAppsLoading(false);
    emit appsChanged();
    if (loadAgain_) {
        loadAgain_ = false;
        refresh();
    }
}

void AppsState::setAppsLoading(bool loading) {
    if (appsLoading_ != loading) {
        appsLoading_ = loading;
        emit appsLoadingChanged();
    }
}

std::vector<std::string> AppsState::runningIdentifiers() {
    return platform::runningApplicationIdentifiers();
}

bool AppsState::uninstall(const InstalledApp& app) {
    if (uninstallRefusal(app, runningIdentifiers())) {
        return false;
    }
    app_.removal().propose(uninstallPlanItems(app), uninstallTitle(app));
    return true;
}

void AppsState::followRemoval(const std::set<std::string>& paths) {
    if (paths.empty() || !std::ranges::any_of(apps_, [&paths](const InstalledApp& app) {
            return touches(app, paths);
        })) {
        return;
    }
    const size_t before = apps_.size();
    std::erase_if(apps_, [&paths](const InstalledApp& app) { return wentWith(app.path, paths); });
    if (apps_.size() != before) {
        emit appsChanged();
    }
    if (appsLoading_) {
        loadAgain_ = true;
    } else {
        refresh();
    }
}

} // namespace dorvik
