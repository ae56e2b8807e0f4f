#pragma once

// The System Data page's state: the parts of what the system keeps for itself, the local
// snapshots, whether they are being read, and the line left by the last snapshot deletion.
// Nothing is kept between visits: each refresh measures and lists afresh, off the main thread.
// Main thread only.

#include "platform/RunTool.h"
#include "state/MainThreadRelay.h"
#include "system/LocalSnapshots.h"
#include "system/SystemData.h"

#include <QObject>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dorvik {

class AppState;

// Where the page's figures come from: this computer in the program, a temporary tree and
// recorded commands in tests.
struct SystemDataSources {
    SystemDataOptions measuring;
    SnapshotTools tools;
    platform::ProcessRunner privileged = platform::runProcess;
};

class SystemDataState : public QObject {
    Q_OBJECT

public:
    // `app` owns it and outlives it.
    explicit SystemDataState(AppState& app);
    ~SystemDataState() override;

    const std::vector<SystemDataPart>& parts() const { return parts_; }
    const std::vector<LocalSnapshot>& snapshots() const { return snapshots_; }
    bool isLoading() const { return loading_; }
    // While a deletion waits for the administrator's answer.
    bool isDeleting() const { return deleting_; }
    const std::optional<std::string>& snapshotMessage() const { return snapshotMessage_; }
    // The sum of the parts.
    int64_t measuredSize() const;

    void setSources(SystemDataSources sources) { sources_ = std::move(sources); }

    // Measures the parts (the scan's sizes where it holds them) and lists the snapshots side by
    // side; the page changes once both are done. A newer refresh makes an older one's results
    // count for nothing.
    void refresh();
    // Deletes the snapshot as the administrator, shows the outcome in snapshotMessage (cleared on
    // success), lists the snapshots again and reads the volume again. One at a time.
    void deleteSnapshot(const LocalSnapshot& snapshot);

signals:
    // parts, snapshots, loading or deleting changed.
    void changed();
    void snapshotMessageChanged();

private:
    void finishRefreshIfDone(int generation);
    void listSnapshotsAgain();

    AppState& app_;
    SystemDataSources sources_;
    std::shared_ptr<MainThreadRelay<SystemDataState>> relay_;
    std::vector<SystemDataPart> parts_;
    std::vector<LocalSnapshot> snapshots_;
    bool loading_ = false;
    bool deleting_ = false;
    std::optional<std::string> snapshotMessage_;
    int generation_ = 0;
    std::optional<std::vector<SystemDataPart>> measuredParts_;
    std::optional<std::vector<LocalSnapshot>> listedSnapshots_;
};

} // namespace dorvik
