#include "state/LoginItemsState.h"

#include "platform/WalkFolder.h"
#include "state/AppState.h"
#include "state/WorkerHandoff.h"

namespace dorvik {

LoginItemsState::LoginItemsState(AppState& app)
    : app_(app), relay_(std::make_shared<MainThreadRelay<LoginItemsState>>(this)) {
    // An undo may bring a removed entry back.
    connect(&app_.removal(), &RemovalState::historyChanged, this, [this] {
        if (listed_ && !removing_) {
            refresh();
        }
    });
}

LoginItemsState::~LoginItemsState() {
    relay_->detach();
}

LaunchPlaces LoginItemsState::places() const {
    return sources_.places.value_or(LaunchPlaces::ofThisComputer());
}

void LoginItemsState::refresh() {
    const int generation = ++generation_;
    listed_ = true;
    if (!loading_) {
        loading_ = true;
        emit changed();
    }
    startOnWorker([relay = relay_, generation, places = places()] {
        std::vector<LaunchItem> items = listLaunchItems(places);
        relay->post([generation, items = std::move(items)](LoginItemsState& state) mutable {
            if (generation != state.generation_) {
                return;
            }
            state.items_ = std::move(items);
            state.loading_ = false;
            emit state.changed();
        });
    });
}

void LoginItemsState::remove(const LaunchItem& item) {
    if (removing_ || !isRemovable(item)) {
        return;
    }
    removing_ = true;
    emit changed();
    // The password prompt is the desktop's own, in another process: the main thread goes on.
    startOnWorker(
        [relay = relay_, item, places = places(), run = sources_.run, tools = sources_.tools] {
            LaunchRemoval removal = removeLaunchItem(item, places, run, tools);
            const int64_t size =
                removal.toTrash ? platform::walkStatus(*removal.toTrash).blocks * 512 : 0;
            relay->post([removal = std::move(removal), size](LoginItemsState& state) mutable {
                if (!removal.toTrash) {
                    state.finishRemoval(std::move(removal.message));
                    return;
                }
                state.app_.removal().performDeletion(
                    {makeDeletionRequest(*removal.toTrash, size, Removal::trash)}, false,
                    [relay = state.relay_](const DeletionReport& report) {
                        std::optional<std::string> message;
                        if (!report.failures.empty()) {
                            message = report.failures.front().reason;
                        } else if (!report.skippedProtected.empty()) {
                            message = report.skippedProtected.front().reason;
                        }
                        relay->post([message = std::move(message)](LoginItemsState& self) mutable {
                            self.finishRemoval(std::move(message));
                        });
                    });
            });
        });
}

void LoginItemsState::finishRemoval(std::optional<std::string> message) {
    message_ = std::move(message);
    emit messageChanged();
    removing_ = false;
    refresh();
}

} // namespace dorvik
