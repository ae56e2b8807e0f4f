#include "state/AppState.h"

#include "base/PathNames.h"
#include "scanning/MarkRemoved.h"
#include "scanning/ScanArchive.h"
#include "scanning/Scanner.h"
#include "state/Settings.h"
#include "state/StoredExclusions.h"
#include "state/WorkerHandoff.h"
#include "system/FullDiskAccess.h"
#include "trends/ScanSnapshot.h"

#include <chrono>

namespace dorvik {

namespace {

double now() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

AppState::AppState(AppStateOptions options, QObject* parent)
    : QObject(parent), options_(std::move(options)), removal_(*this), junk_(removal_),
      quickClean_(*this, junk_, options_.quickCleanPacing), developer_(*this),
      relay_(std::make_shared<MainThreadRelay<AppState>>(this)),
      storeWatcher_(trends_.directory()) {
    if (!options_.accessProbe) {
        options_.accessProbe = [] { return dorvik::hasFullDiskAccess(); };
    }
    volume_ = volumeInfo("/");
    hasFullDiskAccess_ = probeAccess();
    connect(&storeWatcher_, &StoreWatcher::changed, this, &AppState::readSharedFilesAgain);
    connect(&removal_, &RemovalState::removed, this, &AppState::markRemoved);
    archiveTimer_.setSingleShot(true);
    archiveTimer_.setInterval(options_.archiveDelay);
    connect(&archiveTimer_, &QTimer::timeout, this, [this] { writeArchive(scanTarget_); });
    // The leftovers search asks the loaded application list when there is one, the bundles
    // themselves otherwise.
    leftovers_.setInstalledIdentifiers([this] {
        if (apps_.apps().empty()) {
            return LeftoverSearch::bundleIdentifiersInRoots();
        }
        std::vector<std::string> identifiers;
        for (const InstalledApp& app : apps_.apps()) {
            if (app.bundleID) {
                identifiers.push_back(*app.bundleID);
            }
        }
        return identifiers;
    });
    applyLaunchSettings();
}

AppState::~AppState() {
    relay_->detach();
    if (scanner_) {
        scanner_->cancel();
    }
}

void AppState::applyLaunchSettings() {
    const QString initial = settings_.initialSection();
    if (const auto section = appSectionFromRaw(initial.toStdString())) {
        section_ = *section;
    }
    const QString autoScan = settings_.autoScan();
    if (autoScan == QLatin1String("home")) {
        startScan(ScanTarget::home());
    } else if (autoScan == QLatin1String("disk")) {
        startScan(ScanTarget::wholeDisk());
    } else if (autoScan.startsWith(QLatin1Char('/'))) {
        startScan(ScanTarget::folder(autoScan.toStdString()));
    } else {
        restoreLastScan();
    }
}

void AppState::setSection(AppSection section) {
    if (section_ != section) {
        section_ = section;
        emit sectionChanged();
    }
}

void AppState::setExplorerStack(std::vector<FileNodePtr> stack) {
    explorerStack_ = std::move(stack);
    emit explorerStackChanged();
}

void AppState::setShowAccessOnboarding(bool shown) {
    if (showAccessOnboarding_ != shown) {
        showAccessOnboarding_ = shown;
        emit showAccessOnboardingChanged();
    }
}

void AppState::setLargeFilter(FileFilter filter) {
    if (filter == largeFilter_) {
        return;
    }
    largeFilter_ = std::move(filter);
    emit largeFilterChanged();
}

bool AppState::probeAccess() const {
    return options_.accessProbe();
}

void AppState::setIsScanning(bool scanning) {
    if (isScanning_ != scanning) {
        isScanning_ = scanning;
        emit isScanningChanged();
    }
}

void AppState::setHasFullDiskAccess(bool access) {
    if (hasFullDiskAccess_ != access) {
        hasFullDiskAccess_ = access;
        emit hasFullDiskAccessChanged();
    }
}

void AppState::startScan(std::optional<ScanTarget> target) {
    if (target && *target != scanTarget_) {
        scanTarget_ = *target;
        emit scanTargetChanged();
    }
    if (scanTarget_.kind() != ScanTarget::Kind::folder && !probeAccess() &&
        !settings_.accessOnboardingSkipped()) {
        setShowAccessOnboarding(true);
        return;
    }
    if (scanner_) {
        scanner_->cancel();
    }
    auto scanner = std::make_shared<Scanner>();
    scanner_ = scanner;
    setIsScanning(true);
    progress_ = {};
    emit progressChanged();
    setHasFullDiskAccess(probeAccess());

    const std::string rootPath = scanTarget_.rootPath();
    const std::vector<std::string> excludedList = settings_.excludedPaths();
    std::set<std::string> excluded(excludedList.begin(), excludedList.end());
    startOnWorker([relay = relay_, scanner, rootPath, excluded = std::move(excluded),
                   target = scanTarget_] {
        auto result = scanner->scan(
            rootPath, excluded, [&relay](int64_t files, int64_t bytes, const std::string& path) {
                relay->post([files, bytes, path](AppState& state) {
                    state.progress_ = {files, bytes, path};
                    emit state.progressChanged();
                });
            });
        std::optional<ScanSnapshot> snapshot;
        if (result) {
            snapshot = makeScanSnapshot(*result, now());
        }
        // The tree goes to the main thread whole; this worker keeps no node of it.
        relay->post([scanner, target, result = std::move(result),
                     snapshot = std::move(snapshot)](AppState& state) mutable {
            state.finishScan(scanner, target, std::move(result), std::move(snapshot));
        });
    });
}

void AppState::finishScan(const std::shared_ptr<Scanner>& scanner, const ScanTarget& target,
                          std::optional<ScanResult> result, std::optional<ScanSnapshot> snapshot) {
    if (scanner_ != scanner) {
        return; // superseded or cancelled: it leaves no trace
    }
    setIsScanning(false);
    if (result) {
        scanWasRestored_ = false;
        adoptScan(std::move(*result));
        writeArchive(target);
        if (snapshot) {
            trends_.record(std::move(*snapshot));
        }
    }
    refreshVolume();
    trends_.recordSample(volume_, now());
}

void AppState::adoptScan(ScanResult result) {
    scan_ = std::move(result);
    explorerStack_ = {scan_->root};
    ++revision_;
    emit scanChanged();
    emit explorerStackChanged();
    emit revisionChanged();
}

void AppState::refreshVolume() {
    volume_ = volumeInfo("/");
    emit volumeChanged();
}

void AppState::cancelScan() {
    if (scanner_) {
        scanner_->cancel();
        scanner_.reset();
    }
    setIsScanning(false);
}

void AppState::refreshFullDiskAccess() {
    setHasFullDiskAccess(probeAccess());
}

void AppState::applicationBecameActive() {
    refreshFullDiskAccess();
    if (showAccessOnboarding_ && hasFullDiskAccess_) {
        setShowAccessOnboarding(false);
        startScan();
    }
}

void AppState::restoreLastScan() {
    isRestoringScan_ = true;
    emit isRestoringScanChanged();
    startOnWorker([relay = relay_, path = ScanArchive::defaultPath()] {
        auto archived = ScanArchive::read(path);
        relay->post([archived = std::move(archived)](AppState& state) mutable {
            state.isRestoringScan_ = false;
            emit state.isRestoringScanChanged();
            // A scan the user started meanwhile wins over the archive.
            if (!archived || state.scan_ || state.isScanning_) {
                return;
            }
            if (archived->target != state.scanTarget_) {
                state.scanTarget_ = archived->target;
                emit state.scanTargetChanged();
            }
            state.scanWasRestored_ = true;
            state.adoptScan(std::move(archived->scan));
        });
    });
}

void AppState::revealNode(const FileNodePtr& node) {
    if (node == nullptr) {
        return;
    }
    FileNodePtr folder = node->isDirectory ? node : node->parent.lock();
    std::vector<FileNodePtr> stack;
    for (; folder != nullptr; folder = folder->parent.lock()) {
        stack.insert(stack.begin(), folder);
    }
    setExplorerStack(std::move(stack));
    setSection(AppSection::explorer);
}

void AppState::markRemoved(const std::set<std::string>& removedPaths) {
    if (!scan_ || removedPaths.empty()) {
        return;
    }
    dorvik::markRemoved(*scan_, removedPaths);
    ++revision_;
    emit scanChanged();
    emit revisionChanged();
    scheduleArchive();
}

void AppState::scheduleArchive() {
    archiveTimer_.start();
}

void AppState::writeArchive(const ScanTarget& target) {
    if (!scan_) {
        return;
    }
    // The nodes change only on this thread, so the payload is encoded here, between two of
    // their changes; the worker gets bytes alone to compress and write.
    startOnWorker(
        [payload = ScanArchive::encodePayload(*scan_, target), path = ScanArchive::defaultPath()] {
            ScanArchive::writePayload(payload, path);
        });
}

size_t AppState::markRestored(const std::set<std::string>& restoredPaths) {
    if (!scan_ || restoredPaths.empty()) {
        return 0;
    }
    std::set<std::string> missing = dorvik::markRestored(*scan_, restoredPaths);
    // What lies outside the scanned folder was never the scan's to show.
    std::erase_if(missing, [root = scan_->root->path()](const std::string& path) {
        return !isUnder(path, root);
    });
    if (missing.size() < restoredPaths.size()) {
        ++revision_;
        emit scanChanged();
        emit revisionChanged();
        scheduleArchive();
    }
    return missing.size();
}

void AppState::readSharedFilesAgain() {
    removal_.reloadHistory();
    if (trends_.reload()) {
        emit trendsChanged();
    }
}

} // namespace dorvik
