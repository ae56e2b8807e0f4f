#include "state/RemovedAppState.h"

#include "apps/UninstallPlan.h"
#include "state/RemovalState.h"

namespace dorvik {

RemovedAppState::RemovedAppState(RemovalState& removal) : removal_(removal) {}

void RemovedAppState::report(RemovedApp removed) {
    removedApp_ = std::move(removed);
    emit removedAppChanged();
}

void RemovedAppState::dismiss() {
    if (removedApp_) {
        removedApp_.reset();
        emit removedAppChanged();
    }
}

void RemovedAppState::reviewAndRemove() {
    if (!removedApp_) {
        return;
    }
    const RemovedApp removed = std::move(*removedApp_);
    removedApp_.reset();
    removal_.propose(removedAppPlanItems(removed), removedAppTitle(removed));
    emit removedAppChanged();
}

} // namespace dorvik
