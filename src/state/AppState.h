#pragma once

// The one central object of the program. It lives on the main thread for the whole run, owns the
// scan in force and the services, starts, cancels and restores scans, and tells observers of
// every change through its signals. It knows no page; pages read it and ask it to act.

#include "background/BackgroundServices.h"
#include "scanning/FileFilter.h"
#include "scanning/ScanResult.h"
#include "scanning/ScanTarget.h"
#include "state/AppSection.h"
#include "state/AppsState.h"
#include "state/CloudState.h"
#include "state/DeveloperState.h"
#include "state/DuplicatesState.h"
#include "state/JunkState.h"
#include "state/LeftoversState.h"
#include "state/LoginItemsState.h"
#include "state/MainThreadRelay.h"
#include "state/QuickCleanState.h"
#include "state/RemovalState.h"
#include "state/RemovedAppState.h"
#include "state/SettingsState.h"
#include "state/StoreWatcher.h"
#include "state/SystemDataState.h"
#include "system/VolumeInfo.h"
#include "trends/ScanSnapshot.h"
#include "trends/TrendStore.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dorvik {

class Scanner;

struct AppStateOptions {
    // Whether the program may read the whole disk; tests answer for the system.
    std::function<bool()> accessProbe;
    // The quiet time after the last removal before the archive is rewritten.
    std::chrono::milliseconds archiveDelay{3000};
    // The least time Quick Clean's working stages stay on screen.
    QuickCleanPacing quickCleanPacing;
    // The tick's period, and what the background reads and posts through.
    BackgroundOptions background;
};

class AppState : public QObject {
    Q_OBJECT

public:
    explicit AppState(AppStateOptions options = {}, QObject* parent = nullptr);
    ~AppState() override;

    AppSection section() const { return section_; }
    void setSection(AppSection section);

    const ScanTarget& scanTarget() const { return scanTarget_; }
    bool isScanning() const { return isScanning_; }
    bool isRestoringScan() const { return isRestoringScan_; }
    const ScanProgressSnapshot& progress() const { return progress_; }
    const std::optional<ScanResult>& scan() const { return scan_; }
    // The scan in force was read from the archive rather than made since the program started.
    bool scanWasRestored() const { return scanWasRestored_; }
    // Counts the changes of the tree; derived lists key their caches on it.
    int revision() const { return revision_; }
    const std::optional<VolumeInfo>& volume() const { return volume_; }
    // The folders from the root down to the one open in the explorer.
    const std::vector<FileNodePtr>& explorerStack() const { return explorerStack_; }
    void setExplorerStack(std::vector<FileNodePtr> stack);
    bool hasFullDiskAccess() const { return hasFullDiskAccess_; }
    bool showAccessOnboarding() const { return showAccessOnboarding_; }
    void setShowAccessOnboarding(bool shown);

    // The stored settings; an excluded folder takes effect at the next scan.
    SettingsState& settings() { return settings_; }
    const SettingsState& settings() const { return settings_; }
    // The plan, toast, failures and history, and every removal.
    RemovalState& removal() { return removal_; }
    const RemovalState& removal() const { return removal_; }
    TrendStore& trends() { return trends_; }
    // The tick, the tray's switches and the scheduled clean; started by the application.
    BackgroundServices& background() { return background_; }
    const BackgroundServices& background() const { return background_; }
    // The junk the finder last found, and Quick Clean's run over it.
    JunkState& junk() { return junk_; }
    const JunkState& junk() const { return junk_; }
    QuickCleanState& quickClean() { return quickClean_; }
    const QuickCleanState& quickClean() const { return quickClean_; }
    // The parts of what the system keeps for itself, and the local snapshots.
    SystemDataState& systemData() { return systemData_; }
    // The duplicates of the last scan and the sharing of their space.
    DuplicatesState& duplicates() { return duplicates_; }
    const DuplicatesState& duplicates() const { return duplicates_; }
    // The Developer page's artifacts and virtual disks.
    DeveloperState& developer() { return developer_; }
    const DeveloperState& developer() const { return developer_; }
    // The App Leftovers page's search.
    LeftoversState& leftovers() { return leftovers_; }
    const LeftoversState& leftovers() const { return leftovers_; }
    // The application last reported gone, shown in the banner above the pages.
    RemovedAppState& removedApp() { return removedApp_; }
    const RemovedAppState& removedApp() const { return removedApp_; }
    // The installed applications and their uninstall.
    AppsState& apps() { return apps_; }
    const AppsState& apps() const { return apps_; }
    // What starts by itself at login, and its removal.
    LoginItemsState& loginItems() { return loginItems_; }
    const LoginItemsState& loginItems() const { return loginItems_; }
    // The downloads of iCloud's files, and giving them back.
    CloudState& cloud() { return cloud_; }
    const CloudState& cloud() const { return cloud_; }

    // The filter of the large-files page; other pages may set it before they send the user
    // there.
    const FileFilter& largeFilter() const { return largeFilter_; }
    void setLargeFilter(FileFilter filter);

    // Starts a scan of `target`, or of the current target. A whole-disk or home scan without
    // access asks first (showAccessOnboarding) unless the user declined before.
    void startScan(std::optional<ScanTarget> target = std::nullopt);
    void cancelScan();
    // Runs the access probe again and keeps its answer.
    void refreshFullDiskAccess();
    // The program came back to the front: access may have been given meanwhile. If the access
    // sheet is up and access is there now, the sheet goes and the scan it held back starts.
    void applicationBecameActive();
    // Opens the explorer at the node's folder (its parent for a file).
    void revealNode(const FileNodePtr& node);
    // After a removal: marks the paths that are gone and rewrites the archive a little later.
    void markRemoved(const std::set<std::string>& removedPaths);
    // After an undo: puts the nodes of the paths back in the tree. Returns how many of those
    // under the scanned folder had no node to put back.
    size_t markRestored(const std::set<std::string>& restoredPaths);
    // Rewrites the archive once things have been quiet for the archive delay.
    void scheduleArchive();
    // Reads the figures of "/" again.
    void refreshVolume();

signals:
    void sectionChanged();
    void scanTargetChanged();
    void isScanningChanged();
    void isRestoringScanChanged();
    void progressChanged();
    void scanChanged();
    void revisionChanged();
    void volumeChanged();
    void explorerStackChanged();
    void hasFullDiskAccessChanged();
    void showAccessOnboardingChanged();
    void largeFilterChanged();
    // Another process changed the trend files, or the background added a sample.
    void trendsChanged();
    // The scan became stale, or fresh again, as time passed.
    void scanStalenessChanged();

private:
    void applyLaunchSettings();
    void restoreLastScan();
    // `target` is the one the scan was started for.
    void finishScan(const std::shared_ptr<Scanner>& scanner, const ScanTarget& target,
                    std::optional<ScanResult> result, std::optional<ScanSnapshot> snapshot);
    void adoptScan(ScanResult result);
    // Writes the scan in force to the archive, as a scan of `target`.
    void writeArchive(const ScanTarget& target);
    void readSharedFilesAgain();
    void setIsScanning(bool scanning);
    void setHasFullDiskAccess(bool access);
    bool probeAccess() const;

    AppStateOptions options_;
    SettingsState settings_;
    BackgroundServices background_{settings_, options_.background};
    RemovalState removal_;
    JunkState junk_;
    QuickCleanState quickClean_;
    DeveloperState developer_;
    std::shared_ptr<MainThreadRelay<AppState>> relay_;
    TrendStore trends_;
    StoreWatcher storeWatcher_;
    QTimer archiveTimer_;
    DuplicatesState duplicates_{*this};

    AppSection section_ = AppSection::smartClean;
    ScanTarget scanTarget_ = ScanTarget::wholeDisk();
    bool isScanning_ = false;
    bool isRestoringScan_ = false;
    ScanProgressSnapshot progress_;
    std::optional<ScanResult> scan_;
    bool scanWasRestored_ = false;
    int revision_ = 0;
    std::optional<VolumeInfo> volume_;
    std::vector<FileNodePtr> explorerStack_;
    FileFilter largeFilter_;
    bool hasFullDiskAccess_ = false;
    bool showAccessOnboarding_ = false;
    std::shared_ptr<Scanner> scanner_;
    SystemDataState systemData_{*this};
    LeftoversState leftovers_{removal_};
    RemovedAppState removedApp_{removal_};
    AppsState apps_{*this};
    LoginItemsState loginItems_{*this};
    CloudState cloud_{*this};
};

} // namespace dorvik
