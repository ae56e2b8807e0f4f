#include "state/LeftoversState.h"

#include "base/PathNames.h"
#include "removal/DeletionPlan.h"
#include "state/RemovalState.h"
#include "state/WorkerHandoff.h"

#include <algorithm>

namespace dorvik {

LeftoversState::LeftoversState(RemovalState& removal)
    : removal_(removal), relay_(std::make_shared<MainThreadRelay<LeftoversState>>(this)),
      installedIdentifiers_(LeftoverSearch::bundleIdentifiersInRoots) {
    connect(&removal, &RemovalState::removed, this, &LeftoversState::markRemoved);
}

LeftoversState::~LeftoversState() {
    relay_->detach();
}

void LeftoversState::setInstalledIdentifiers(IdentifierSource source) {
    installedIdentifiers_ = std::move(source);
}

void LeftoversState::refresh() {
    if (loading_) {
        return;
    }
    loading_ = true;
    emit loadingChanged();
    startOnWorker([relay = relay_, identifiers = installedIdentifiers_()] {
        std::vector<Leftover> found = LeftoverSearch::search(identifiers);
        relay->post([found = std::move(found)](LeftoversState& state) mutable {
            state.finishSearch(std::move(found));
        });
    });
}

void LeftoversState::finishSearch(std::vector<Leftover> found) {
    loading_ = false;
    setLeftovers(std::move(found));
    emit loadingChanged();
}

void LeftoversState::setLeftovers(std::vector<Leftover> leftovers) {
    leftovers_ = std::move(leftovers);
    searched_ = true;
    emit leftoversChanged();
}

void LeftoversState::proposeRemoval(const std::vector<Leftover>& selected) {
    std::vector<PlanItem> items;
    items.reserve(selected.size());
    for (const Leftover& leftover : selected) {
        items.push_back(makePlanItem(leftover.path, leftover.size, Removal::trash));
    }
    removal_.propose(items, std::string(PlanTitles::deleteAppLeftovers));
}

void LeftoversState::markRemoved(const std::set<std::string>& paths) {
    const size_t taken = std::erase_if(leftovers_, [&paths](const Leftover& leftover) {
        return std::ranges::any_of(paths, [&leftover](const std::string& path) {
            return isAtOrUnder(leftover.path, path);
        });
    });
    if (taken > 0) {
        emit leftoversChanged();
    }
}

} // namespace dorvik
