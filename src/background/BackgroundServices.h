#pragma once

// What keeps working while the user is doing something else. Every five minutes a tick reads the
// free space of "/", feeds the trend store an hourly sample, notices when the scan goes stale,
// warns once when space runs low and runs the scheduled clean when it is due. It also holds the
// switches of the tray, the removed-app watcher and launch at login. AppState owns it; it looks
// back at AppState, once started, through a weak pointer. Main thread only.

#include "background/CleanSchedule.h"
#include "background/RemovedAppWatcher.h"
#include "removal/DeletionRequest.h"
#include "state/MainThreadRelay.h"
#include "system/VolumeInfo.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace dorvik {

class AppState;
class SettingsState;

// The period of the tick; tests shorten it.
inline constexpr std::chrono::milliseconds backgroundTickInterval{300'000};

struct BackgroundOptions {
    std::chrono::milliseconds tickInterval = backgroundTickInterval;
    // The figures of "/"; by default the volume's own. Tests give volumes of their choosing.
    std::function<std::optional<VolumeInfo>()> readVolume;
    // Posts a notification (title and body are keys of the wording); by default on the
    // desktop's notification service over the session bus.
    std::function<void(std::string_view title, std::string_view body)> notify;
    // Seconds since 1970; by default the clock's.
    std::function<double()> now;
    // What the launch-at-login entry starts; by default this program.
    QString executable;
};

class BackgroundServices : public QObject {
    Q_OBJECT

public:
    // Reads and writes its settings through `settings`, which outlives it.
    explicit BackgroundServices(SettingsState& settings, BackgroundOptions options = {},
                                QObject* parent = nullptr);
    ~BackgroundServices() override;

    // The last reading of "/"; none when it could not be read.
    const std::optional<VolumeInfo>& volume() const { return volume_; }
    // When the scheduled clean last ran (seconds since 1970) and what it freed.
    std::optional<double> lastAutoClean() const;
    int64_t lastAutoCleanBytes() const;
    // A clean is under way.
    bool isCleaning() const { return cleaning_; }
    // The free space lies below the warning threshold, when the warning is on.
    bool isSpaceLow() const;

    // The stored settings of the background, each written through here so that its followers
    // hear of it.
    CleanSchedule cleanSchedule() const;
    void setCleanSchedule(CleanSchedule schedule);
    int lowSpaceGB() const;
    void setLowSpaceGB(int gigabytes);
    bool menuBar() const;
    void setMenuBar(bool shown);
    bool watchRemovedApps() const;
    // Also starts or stops the removed-app watcher.
    void setWatchRemovedApps(bool watch);
    // Read live from the autostart entry; a change that fails is logged and nothing else.
    bool launchAtLogin() const;
    void setLaunchAtLogin(bool enabled);

    // Keeps `state`, runs a tick at once, then one every tick interval, and brings the watcher
    // in line with its setting. Called once, when the state is ready.
    void start(AppState& state);
    // The five steps, in order: volume, sample, staleness, low space, schedule.
    void tick();
    // Reads the figures of "/" again.
    void refreshVolume();
    // The clean of the schedule, at once, whatever the schedule says ("Run Now"). Nothing while
    // a clean is under way or before start.
    void cleanNow();

signals:
    void volumeChanged();
    // A setting of the background or the last clean's record changed.
    void changed();
    void cleaningChanged();

private:
    double now() const;
    void recordSample(double now);
    void followStaleness(double now);
    void checkLowSpace();
    void checkSchedule(double now);
    void carryOut(std::vector<DeletionRequest> requests);
    void finishClean(int64_t freed);
    void setCleaning(bool cleaning);
    void alignWatcher();
    void reportRemovedApp(const RemovedApp& removed);

    SettingsState& settings_;
    BackgroundOptions options_;
    std::shared_ptr<MainThreadRelay<BackgroundServices>> relay_;
    QPointer<AppState> state_;
    QTimer timer_;
    std::optional<VolumeInfo> volume_;
    bool scanWasStale_ = false;
    bool cleaning_ = false;
    RemovedAppWatcher appWatcher_;
};

} // namespace dorvik
