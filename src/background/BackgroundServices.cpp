#include "background/BackgroundServices.h"

#include "background/BackgroundTexts.h"
#include "background/DesktopNotifications.h"
#include "background/LaunchAtLogin.h"
#include "background/LowSpace.h"
#include "base/Dates.h"
#include "cleaning/ScheduledClean.h"
#include "state/AppState.h"
#include "state/ScanStaleness.h"
#include "state/SettingsState.h"
#include "state/WorkerHandoff.h"

#include <QCoreApplication>

namespace dorvik {

namespace {

BackgroundOptions withDefaults(BackgroundOptions options) {
    if (!options.readVolume) {
        options.readVolume = [] { return volumeInfo("/"); };
    }
    if (!options.notify) {
        options.notify = [](std::string_view title, std::string_view body) {
            DesktopNotifications::post(QDBusConnection::sessionBus(), title, body);
        };
    }
    if (!options.now) {
        options.now = [] { return Dates::now(); };
    }
    return options;
}

} // namespace

BackgroundServices::BackgroundServices(SettingsState& settings, BackgroundOptions options,
                                       QObject* parent)
    : QObject(parent), settings_(settings), options_(withDefaults(std::move(options))),
      relay_(std::make_shared<MainThreadRelay<BackgroundServices>>(this)) {
    volume_ = options_.readVolume();
    connect(&timer_, &QTimer::timeout, this, &BackgroundServices::tick);
}

BackgroundServices::~BackgroundServices() {
    relay_->detach();
}

double BackgroundServices::now() const {
    return options_.now();
}

std::optional<double> BackgroundServices::lastAutoClean() const {
    const std::optional<double> stored = settings_.lastAutoClean();
    return stored ? std::optional(Dates::fromReferenceDate(*stored)) : std::nullopt;
}

int64_t BackgroundServices::lastAutoCleanBytes() const {
    return settings_.lastAutoCleanBytes();
}

bool BackgroundServices::isSpaceLow() const {
    return volume_ && LowSpace::isLow(volume_->available, lowSpaceGB());
}

CleanSchedule BackgroundServices::cleanSchedule() const {
    return cleanScheduleFromRaw(settings_.cleanSchedule().toStdString());
}

void BackgroundServices::setCleanSchedule(CleanSchedule schedule) {
    settings_.setCleanSchedule(QString::fromLatin1(rawValue(schedule)));
    emit changed();
}

int BackgroundServices::lowSpaceGB() const {
    return settings_.lowSpaceGB();
}

void BackgroundServices::setLowSpaceGB(int gigabytes) {
    settings_.setLowSpaceGB(gigabytes);
    emit changed();
}

bool BackgroundServices::menuBar() const {
    return settings_.menuBar();
}

void BackgroundServices::setMenuBar(bool shown) {
    settings_.setMenuBar(shown);
    emit changed();
}

bool BackgroundServices::watchRemovedApps() const {
    return settings_.watchRemovedApps();
}

void BackgroundServices::setWatchRemovedApps(bool watch) {
    settings_.setWatchRemovedApps(watch);
    emit changed();
    alignWatcher();
}

bool BackgroundServices::launchAtLogin() const {
    return LaunchAtLogin::isEnabled();
}

void BackgroundServices::setLaunchAtLogin(bool enabled) {
    const QString executable = options_.executable.isEmpty()
                                   ? QCoreApplication::applicationFilePath()
                                   : options_.executable;
    LaunchAtLogin::setEnabled(enabled, executable);
    emit changed();
}

void BackgroundServices::start(AppState& state) {
    state_ = &state;
    tick();
    timer_.start(options_.tickInterval);
    alignWatcher();
}

void BackgroundServices::tick() {
    // dorvik-cli's tick, run by a timer of the user's session, may have changed the flags.
    settings_.reload();
    refreshVolume();
    const double moment = now();
    recordSample(moment);
    followStaleness(moment);
    checkLowSpace();
    checkSchedule(moment);
    // The setting may have been changed by another process meanwhile.
    alignWatcher();
}

void BackgroundServices::refreshVolume() {
    volume_ = options_.readVolume();
    emit volumeChanged();
}

void BackgroundServices::recordSample(double moment) {
    if (!state_) {
        return;
    }
    TrendStore& trends = state_->trends();
    const size_t before = trends.samples().size();
    trends.recordSample(volume_, moment);
    if (trends.samples().size() != before) {
        emit state_->trendsChanged();
    }
}

void BackgroundServices::followStaleness(double moment) {
    if (!state_) {
        return;
    }
    const bool stale = isScanStale(state_->scan(), state_->isScanning(), moment);
    if (stale != scanWasStale_) {
        scanWasStale_ = stale;
        emit state_->scanStalenessChanged();
    }
}

void BackgroundServices::checkLowSpace() {
    const std::optional<int64_t> free = volume_ ? std::optional(volume_->available) : std::nullopt;
    const bool notified = settings_.lowSpaceNotified();
    const LowSpace::Decision decision = LowSpace::check(free, lowSpaceGB(), notified);
    if (decision.notified != notified) {
        settings_.setLowSpaceNotified(decision.notified);
    }
    if (decision.warn) {
        options_.notify(BackgroundTexts::lowSpaceTitle, BackgroundTexts::lowSpaceBody(*free));
    }
}

void BackgroundServices::checkSchedule(double moment) {
    if (state_ && isCleanDue(cleanSchedule(), lastAutoClean(), moment)) {
        cleanNow();
    }
}

void BackgroundServices::cleanNow() {
    if (!state_ || cleaning_) {
        return;
    }
    setCleaning(true);
    // The finder walks the rules' folders: off the main thread.
    startOnWorker([relay = relay_] {
        std::vector<DeletionRequest> requests = ScheduledClean::requests(ScheduledClean::find());
        relay->post([requests = std::move(requests)](BackgroundServices& services) mutable {
            services.carryOut(std::move(requests));
        });
    });
}

void BackgroundServices::carryOut(std::vector<DeletionRequest> requests) {
    if (!state_ || requests.empty()) {
        finishClean(0);
        return;
    }
    // Quiet: nothing of it shows on the screen, and it still goes into the history.
    state_->removal().performDeletion(std::move(requests), true,
                                      [services = QPointer(this)](const DeletionReport& report) {
                                          if (services) {
                                              services->finishClean(report.freed);
                                          }
                                      });
}

void BackgroundServices::finishClean(int64_t freed) {
    settings_.setLastAutoClean(Dates::toReferenceDate(now()));
    settings_.setLastAutoCleanBytes(freed);
    refreshVolume();
    setCleaning(false);
    emit changed();
    if (BackgroundTexts::announcesClean(freed)) {
        options_.notify(BackgroundTexts::cleanedTitle(freed), BackgroundTexts::cleanedBody);
    }
}

void BackgroundServices::setCleaning(bool cleaning) {
    if (cleaning_ != cleaning) {
        cleaning_ = cleaning;
        emit cleaningChanged();
    }
}

// Where the removed-app watcher follows "watchRemovedApps": started when it is on and not
// running, left alone when it runs, stopped when it is off. Called from start and from the
// setting's setter, and at each tick. The watcher is not part of the program yet, so there is
// nothing to align.
void BackgroundServices::alignWatcher() {
    if (!watchRemovedApps()) {
        appWatcher_.stop();
    } else if (!appWatcher_.isRunning()) {
        appWatcher_.start([this](const RemovedApp& removed) { reportRemovedApp(removed); });
    }
}

void BackgroundServices::reportRemovedApp(const RemovedApp& removed) {
    if (state_) {
        state_->removedApp().report(removed);
    }
    options_.notify(BackgroundTexts::removedAppTitle(removed.name, removed.itemsSize()),
                    BackgroundTexts::removedAppBody);
}

} // namespace dorvik
