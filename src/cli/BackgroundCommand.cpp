// dorvik-cli background --tick: one tick of the background services without the application, for
// a timer of the user's session. It reads the volume, keeps the hourly sample, warns of low space
// and runs the scheduled clean when it is due, over the same settings and files as the
// application, and says each step on standard output.

#include "background/BackgroundTexts.h"
#include "background/CleanSchedule.h"
#include "background/DesktopNotifications.h"
#include "background/LowSpace.h"
#include "base/Dates.h"
#include "base/TextForms.h"
#include "cleaning/ScheduledClean.h"
#include "cli/Commands.h"
#include "removal/DeletionHistory.h"
#include "removal/RemovalTransaction.h"
#include "state/SettingsState.h"
#include "system/VolumeInfo.h"
#include "trends/TrendStore.h"

#include <QCoreApplication>

#include <iostream>

namespace dorvik::cli {

namespace {

// The notification service has this long to take a notification before the command ends.
constexpr std::chrono::milliseconds notificationWait{2000};

void notify(std::string_view title, std::string_view body) {
    DesktopNotifications::postAndWait(QDBusConnection::sessionBus(), title, body, notificationWait);
}

void recordSample(const std::optional<VolumeInfo>& volume, double now) {
    if (!volume) {
        std::cout << "Free space: unknown, / could not be read\n";
        return;
    }
    std::cout << "Free space: " << TextForms::size(volume->available) << " of "
              << TextForms::size(volume->total) << "\n";
    TrendStore trends;
    const size_t before = trends.samples().size();
    trends.recordSample(volume, now);
    std::cout << (trends.samples().size() != before
                      ? "Space sample: recorded\n"
                      : "Space sample: not needed, the last is less than an hour old\n");
}

void checkLowSpace(const std::optional<VolumeInfo>& volume, SettingsState& settings) {
    const int thresholdGB = settings.lowSpaceGB();
    const std::optional<int64_t> free = volume ? std::optional(volume->available) : std::nullopt;
    const LowSpace::Decision decision =
        LowSpace::check(free, thresholdGB, settings.lowSpaceNotified());
    if (decision.notified != settings.lowSpaceNotified()) {
        settings.setLowSpaceNotified(decision.notified);
    }
    std::cout << "Low-space warning: ";
    if (thresholdGB < 1) {
        std::cout << "off\n";
    } else if (!free) {
        std::cout << "no reading\n";
    } else if (decision.warn) {
        std::cout << "given, below " << thresholdGB << " GB\n";
        notify(BackgroundTexts::lowSpaceTitle, BackgroundTexts::lowSpaceBody(*free));
    } else if (LowSpace::isLow(*free, thresholdGB)) {
        std::cout << "already given, below " << thresholdGB << " GB\n";
    } else {
        std::cout << "none, at or above " << thresholdGB << " GB\n";
    }
}

void runScheduledClean(SettingsState& settings, double now) {
    const CleanSchedule schedule = cleanScheduleFromRaw(settings.cleanSchedule().toStdString());
    const std::optional<double> stored = settings.lastAutoClean();
    const std::optional<double> lastRun =
        stored ? std::optional(Dates::fromReferenceDate(*stored)) : std::nullopt;
    std::cout << "Scheduled clean: ";
    if (schedule == CleanSchedule::off) {
        std::cout << "off\n";
        return;
    }
    if (!isCleanDue(schedule, lastRun, now)) {
        std::cout << label(schedule) << ", next after "
                  << TextForms::abbreviatedDateTime(*lastRun + *minimumInterval(schedule)) << "\n";
        return;
    }
    const std::vector<DeletionRequest> requests = ScheduledClean::requests(ScheduledClean::find());
    int64_t freed = 0;
    if (!requests.empty()) {
        const DeletionOutcome outcome = carryOutRemoval(requests, DeletionHistory::defaultPath());
        freed = outcome.report.freed;
        std::cout << "freed " << TextForms::size(freed) << " ("
                  << TextForms::counted(static_cast<int64_t>(outcome.report.deletedPaths.size()),
                                        "item", "items")
                  << ")\n";
    } else {
        std::cout << "nothing to clean\n";
    }
    settings.setLastAutoClean(Dates::toReferenceDate(Dates::now()));
    settings.setLastAutoCleanBytes(freed);
    if (BackgroundTexts::announcesClean(freed)) {
        notify(BackgroundTexts::cleanedTitle(freed), BackgroundTexts::cleanedBody);
    }
}

} // namespace

int runBackground(Arguments& arguments) {
    bool tick = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word != "--tick") {
            throw UsageError("unknown word " + word);
        }
        tick = true;
    }
    if (!tick) {
        throw UsageError("say --tick to run one tick");
    }
    // The session bus wants an application object; the command has no event loop of its own.
    int argc = 1;
    char name[] = "dorvik-cli";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);

    SettingsState settings;
    const double now = Dates::now();
    const std::optional<VolumeInfo> volume = volumeInfo("/");
    recordSample(volume, now);
    checkLowSpace(volume, settings);
    runScheduledClean(settings, now);
    return 0;
}

} // namespace dorvik::cli
