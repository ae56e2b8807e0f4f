#pragma once

// Watches the application folders and, once they have been quiet for a while after a change,
// reports each application that went away the ordinary way and left enough behind, so that the
// program can offer to clean up while the memory is fresh. Its owner starts and stops it. Main
// thread only; the snapshots and the size walks run on workers.

#include "apps/InstalledApp.h"
#include "apps/RemovedAppCheck.h"
#include "state/MainThreadRelay.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QSocketNotifier;

namespace dorvik {

// A burst of folder events gives one check, this long after the last event. The wait also lets
// an installer or an update finish replacing a bundle.
inline constexpr std::chrono::milliseconds removedAppQuietPeriod{10'000};

struct RemovedAppWatcherOptions {
    std::chrono::milliseconds quietPeriod = removedAppQuietPeriod;
    // The size of a left item; Measure folder's walk when empty.
    std::function<int64_t(const std::string& path)> measure;
};

class RemovedAppWatcher : public QObject {
    Q_OBJECT

public:
    explicit RemovedAppWatcher(RemovedAppWatcherOptions options = {}, QObject* parent = nullptr);
    ~RemovedAppWatcher() override;

    // Stops whatever runs, keeps `onRemoved`, takes the first snapshot (nothing is reported for
    // it) and watches each application root that can be watched.
    void start(std::function<void(const RemovedApp&)> onRemoved);
    // Cancels a check that waits or runs, and stops watching.
    void stop();
    // Watching at least one folder.
    bool isRunning() const { return !sources_.empty(); }
    size_t watchedFolders() const { return sources_.size(); }
    // A change was seen and the quiet period before its check runs.
    bool isCheckPending() const { return pending_.isActive(); }

signals:
    // A check compared the folders again, whether or not it reported anything.
    void checked();

private:
    struct Source {
        int descriptor;
        std::unique_ptr<QSocketNotifier> notifier;
    };

    void watch(const std::string& folder);
    void runCheck();
    void finishCheck(int generation, RemovedAppCheck::Snapshot snapshot,
                     std::vector<RemovedApp> reports);

    RemovedAppWatcherOptions options_;
    std::shared_ptr<MainThreadRelay<RemovedAppWatcher>> relay_;
    std::function<void(const RemovedApp&)> onRemoved_;
    std::vector<Source> sources_;
    QTimer pending_;
    // The applications seen last; none until the first snapshot lands.
    std::optional<RemovedAppCheck::Snapshot> known_;
    bool checking_ = false;
    // The quiet period ended while a check ran, or before the first snapshot landed.
    bool checkWanted_ = false;
    // Counts starts and stops; work that began under an older one is dropped when it lands.
    int generation_ = 0;
};

} // namespace dorvik
