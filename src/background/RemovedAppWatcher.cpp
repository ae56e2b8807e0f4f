#include "background/RemovedAppWatcher.h"

#include "apps/AppInventory.h"
#include "platform/FolderEvents.h"
#include "state/WorkerHandoff.h"

#include <QSocketNotifier>

namespace dorvik {

RemovedAppWatcher::RemovedAppWatcher(RemovedAppWatcherOptions options, QObject* parent)
    : QObject(parent), options_(std::move(options)),
      relay_(std::make_shared<MainThreadRelay<RemovedAppWatcher>>(this)) {
    pending_.setSingleShot(true);
    pending_.setInterval(options_.quietPeriod);
    connect(&pending_, &QTimer::timeout, this, &RemovedAppWatcher::runCheck);
}

RemovedAppWatcher::~RemovedAppWatcher() {
    relay_->detach();
    stop();
}

void RemovedAppWatcher::start(std::function<void(const RemovedApp&)> onRemoved) {
    stop();
    onRemoved_ = std::move(onRemoved);
    const int generation = generation_;
    startOnWorker([relay = relay_, generation] {
        RemovedAppCheck::Snapshot snapshot = RemovedAppCheck::takeSnapshot();
        relay->post([generation, snapshot = std::move(snapshot)](RemovedAppWatcher& watcher) {
            if (generation != watcher.generation_) {
                return;
            }
            watcher.known_ = snapshot;
            if (watcher.checkWanted_) {
                watcher.runCheck();
            }
        });
    });
    for (const std::string& folder : AppInventory::applicationRoots()) {
        watch(folder);
    }
}

void RemovedAppWatcher::watch(const std::string& folder) {
    const auto descriptor = platform::openFolderEvents(folder.c_str());
    if (!descriptor) {
        return; // a folder that can't be watched is simply not watched
    }
    auto notifier = std::make_unique<QSocketNotifier>(*descriptor, QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, [this, descriptor = *descriptor] {
        platform::drainFolderEvents(descriptor);
        pending_.start(); // a new event starts the quiet period again
    });
    sources_.push_back({*descriptor, std::move(notifier)});
}

void RemovedAppWatcher::stop() {
    ++generation_;
    pending_.stop();
    checking_ = false;
    checkWanted_ = false;
    known_.reset();
    for (Source& source : sources_) {
        source.notifier.reset();
        platform::closeFolderEvents(source.descriptor);
    }
    sources_.clear();
}

void RemovedAppWatcher::runCheck() {
    // One check at a time, and never before there is something to compare with.
    if (checking_ || !known_) {
        checkWanted_ = true;
        return;
    }
    checkWanted_ = false;
    checking_ = true;
    RemovedAppCheck::Probes probes = RemovedAppCheck::systemProbes();
    if (options_.measure) {
        probes.measure = options_.measure;
    }
    startOnWorker(
        [relay = relay_, generation = generation_, known = *known_, probes = std::move(probes)] {
            RemovedAppCheck::Snapshot snapshot = RemovedAppCheck::takeSnapshot();
            std::vector<RemovedApp> reports = RemovedAppCheck::reports(known, snapshot, probes);
            relay->post([generation, snapshot = std::move(snapshot),
                         reports = std::move(reports)](RemovedAppWatcher& watcher) mutable {
                watcher.finishCheck(generation, std::move(snapshot), std::move(reports));
            });
        });
}

void RemovedAppWatcher::finishCheck(int generation, RemovedAppCheck::Snapshot snapshot,
                                    std::vector<RemovedApp> reports) {
    if (generation != generation_) {
        return; // stopped (or started again) while the check ran
    }
    checking_ = false;
    known_ = std::move(snapshot);
    const auto onRemoved = onRemoved_;
    for (const RemovedApp& removed : reports) {
        if (onRemoved) {
            onRemoved(removed);
        }
    }
    emit checked();
    if (checkWanted_) {
        runCheck();
    }
}

} // namespace dorvik
