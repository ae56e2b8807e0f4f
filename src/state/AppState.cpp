#include "state/AppState.h"

#include "removal/HistoryJournal.h"
#include "scanning/MarkRemoved.h"
#include "scanning/ScanArchive.h"
#include "scanning/ScanPaths.h"
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

QString key(const char* name) {
    return QString::fromLatin1(name);
}

} // namespace

AppState::AppState(AppStateOptions options, QObject* parent)
    : QObject(parent), options_(std::move(options)),
      settings_(key(settingsOrganisation), key(settingsApplication)),
      history_(DeletionHistory::defaultPath()),
      relay_(std::make_shared<MainThreadRelay<AppState>>(this)),
      storeWatcher_(trends_.directory()) {
    if (!options_.accessProbe) {
        options_.accessProbe = [] { return dorvik::hasFullDiskAccess(); };
    }
    volume_ = volumeInfo("/");
    hasFullDiskAccess_ = probeAccess();
    connect(&storeWatcher_, &StoreWatcher::changed, this, &AppState::readSharedFilesAgain);
    archiveTimer_.setSingleShot(true);
    archiveTimer_.setInterval(options_.archiveDelay);
    connect(&archiveTimer_, &QTimer::timeout, this, [this] { writeArchive(scanTarget_); });
    applyLaunchSettings();
}

AppState::~AppState() {
    relay_->detach();
    if (scanner_) {
        scanner_->cancel();
    }
}

void AppState::applyLaunchSettings() {
    const QString initial = settings_.value(key(SettingKeys::initialSection)).toString();
    if (const auto section = appSectionFromRaw(initial.toStdString())) {
        section_ = *section;
    }
    const QString autoScan = settings_.value(key(SettingKeys::autoScan)).toString();
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

QString AppState::excludedRaw() const {
    return settings_.value(key(SettingKeys::excludedPaths)).toString();
}

void AppState::setExcludedRaw(const QString& raw) {
    settings_.setValue(key(SettingKeys::excludedPaths), raw);
    emit settingsChanged();
}

std::vector<std::string> AppState::excludedPaths() const {
    return StoredExclusions::parse(excludedRaw());
}

void AppState::appendExcludedPath(const std::string& path) {
    setExcludedRaw(StoredExclusions::appended(excludedRaw(), path));
}

void AppState::setLargeFilter(FileFilter filter) {
    if (filter == largeFilter_) {
        return;
    }
    largeFilter_ = std::move(filter);
    emit largeFilterChanged();
}

bool AppState::permanentDelete() const {
    return settings_.value(key(SettingKeys::permanentDelete), false).toBool();
}

void AppState::setPermanentDelete(bool permanent) {
    settings_.setValue(key(SettingKeys::permanentDelete), permanent);
    emit settingsChanged();
}

bool AppState::accessOnboardingSkipped() const {
    return settings_.value(key(SettingKeys::accessOnboardingSkipped), false).toBool();
}

void AppState::setAccessOnboardingSkipped(bool skipped) {
    settings_.setValue(key(SettingKeys::accessOnboardingSkipped), skipped);
    emit settingsChanged();
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
        !accessOnboardingSkipped()) {
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
    const std::vector<std::string> excludedList = excludedPaths();
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

void AppState::propose(const std::vector<PlanItem>& items, const std::string& title) {
    if (auto made = makePlan(items, title)) {
        plan_ = std::move(made);
        emit planChanged();
    }
}

void AppState::cancelPlan() {
    if (plan_) {
        plan_.reset();
        emit planChanged();
    }
}

void AppState::execute(const DeletionPlan& plan, bool includeReview) {
    std::vector<DeletionRequest> requests = planRequests(plan, includeReview, permanentDelete());
    cancelPlan();
    performDeletion(std::move(requests), false);
}

void AppState::performDeletion(std::vector<DeletionRequest> requests, bool quiet,
                               std::function<void(const DeletionReport&)> done) {
    auto journal = std::make_shared<HistoryJournal>(history_.fileURL());
    startOnWorker([relay = relay_, requests = std::move(requests), quiet, done = std::move(done),
                   journal] {
        DeletionOutcome outcome = DeletionEngine::run(requests, journal.get());
        relay->post([outcome = std::move(outcome), quiet, done, journal](AppState& state) mutable {
            const DeletionReport report = outcome.report;
            state.finishDeletion(std::move(outcome), quiet, journal.get());
            if (done) {
                done(report);
            }
        });
    });
}

void AppState::finishDeletion(DeletionOutcome outcome, bool quiet, HistoryJournal* journal) {
    history_.record(outcome.entries, journal);
    emit historyChanged();
    const DeletionReport& report = outcome.report;
    markRemoved(std::set<std::string>(report.deletedPaths.begin(), report.deletedPaths.end()));
    refreshVolume();
    if (quiet) {
        return;
    }
    showToast(deletionToast(report, outcome.entries));
    failures_ = report.failures;
    failures_.insert(failures_.end(), report.skippedProtected.begin(),
                     report.skippedProtected.end());
    emit failuresChanged();
}

void AppState::undo(const std::vector<HistoryEntry>& entries) {
    const UndoReport report = dorvik::undo(history_, entries);
    emit historyChanged();
    Toast toast = undoToast(report.restored);
    const std::set<std::string> restored(report.restoredPaths.begin(), report.restoredPaths.end());
    if (const size_t missing = markRestored(restored); missing > 0) {
        toast.detail = std::to_string(missing) +
                       " restored item(s) were not in this scan. Scan again to list them.";
    }
    showToast(std::move(toast));
    refreshVolume();
}

size_t AppState::markRestored(const std::set<std::string>& restoredPaths) {
    if (!scan_ || restoredPaths.empty()) {
        return 0;
    }
    std::set<std::string> missing = dorvik::markRestored(*scan_, restoredPaths);
    // What lies outside the scanned folder was never the scan's to show.
    std::erase_if(missing, [root = scan_->root->path()](const std::string& path) {
        return !path.starts_with(root.ends_with('/') ? root : root + '/');
    });
    if (missing.size() < restoredPaths.size()) {
        ++revision_;
        emit scanChanged();
        emit revisionChanged();
        scheduleArchive();
    }
    return missing.size();
}

void AppState::clearHistory() {
    history_.clear();
    emit historyChanged();
}

void AppState::readSharedFilesAgain() {
    if (history_.reload()) {
        emit historyChanged();
    }
    if (trends_.reload()) {
        emit trendsChanged();
    }
}

void AppState::showToast(Toast toast) {
    toast_ = std::move(toast);
    emit toastChanged();
}

void AppState::closeToast() {
    if (toast_) {
        toast_.reset();
        emit toastChanged();
    }
}

void AppState::dismissToast(const std::string& id) {
    if (toast_ && toast_->id == id) {
        closeToast();
    }
}

} // namespace dorvik
