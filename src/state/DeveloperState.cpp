#include "state/DeveloperState.h"

#include "base/PathNames.h"
#include "cleaning/JunkFinder.h"
#include "platform/HomeDirectory.h"
#include "removal/DeletionPlan.h"
#include "state/AppState.h"
#include "state/WorkerHandoff.h"

#include <algorithm>

namespace dorvik {

DeveloperState::DeveloperState(AppState& app)
    : app_(app), relay_(std::make_shared<MainThreadRelay<DeveloperState>>(this)) {
    connect(&app, &AppState::scanChanged, this, &DeveloperState::changed);
    connect(&app.removal(), &RemovalState::removed, this, &DeveloperState::forgetRemoved);
    // What the rules find changes with every removal and undo, this program's or another's; a
    // finished scan may have met a disk that changed since the last search too.
    connect(&app.removal(), &RemovalState::historyChanged, this, [this] {
        if (junk_) {
            loadJunk();
        }
    });
    connect(&app, &AppState::isScanningChanged, this, [this] {
        if (junk_ && !app_.isScanning()) {
            loadJunk();
        }
    });
}

DeveloperState::~DeveloperState() {
    relay_->detach();
}

void DeveloperState::loadJunk() {
    const int search = ++junkSearch_;
    setLoadingJunk(true);
    startOnWorker([relay = relay_, search] {
        std::vector<JunkFinding> found = JunkFinder::findAll();
        relay->post([search, found = std::move(found)](DeveloperState& state) mutable {
            if (search != state.junkSearch_) {
                return; // a newer search is under way
            }
            state.setJunk(std::move(found));
        });
    });
}

void DeveloperState::setJunk(std::vector<JunkFinding> junk) {
    ++junkSearch_;
    junk_ = std::move(junk);
    setLoadingJunk(false);
    emit changed();
}

void DeveloperState::setLoadingJunk(bool loading) {
    if (isLoadingJunk_ != loading) {
        isLoadingJunk_ = loading;
        emit isLoadingJunkChanged();
    }
}

void DeveloperState::forgetRemoved(const std::set<std::string>& paths) {
    if (!junk_ || paths.empty()) {
        return;
    }
    for (JunkFinding& finding : *junk_) {
        std::erase_if(finding.items, [&paths](const JunkItem& item) {
            return std::ranges::any_of(
                paths, [&item](const std::string& path) { return isAtOrUnder(item.url, path); });
        });
    }
    std::erase_if(*junk_, [](const JunkFinding& finding) { return finding.items.empty(); });
    emit changed();
}

std::vector<DevItem> DeveloperState::developerItems() const {
    const std::vector<JunkFinding> none;
    return dorvik::developerItems(app_.scan() ? &*app_.scan() : nullptr, junk_ ? *junk_ : none,
                                  platform::homeDirectory());
}

std::vector<VirtualDisk> DeveloperState::virtualDisks() const {
    if (!app_.scan()) {
        return {};
    }
    return dorvik::virtualDisks(app_.scan()->files);
}

void DeveloperState::proposeCleaning(const std::vector<DevItem>& items) {
    std::vector<PlanItem> planItems;
    planItems.reserve(items.size());
    for (const DevItem& item : items) {
        planItems.push_back(makePlanItem(item.path, item.size, item.removal));
    }
    app_.removal().propose(planItems, std::string(PlanTitles::cleanDeveloperArtifacts));
}

} // namespace dorvik
