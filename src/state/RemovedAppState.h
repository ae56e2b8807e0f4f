#pragma once

// The application last reported gone with what it left, shown in the banner above the pages
// until the user either dismisses it or turns it into a plan. The removed-app watcher's owner
// hands each report here. Main thread only.

#include "apps/InstalledApp.h"

#include <QObject>

#include <optional>

namespace dorvik {

class RemovalState;

class RemovedAppState : public QObject {
    Q_OBJECT

public:
    // Proposes through `removal`, which outlives it.
    explicit RemovedAppState(RemovalState& removal);

    const std::optional<RemovedApp>& removedApp() const { return removedApp_; }

    // A report of the watcher; a newer one takes the place of the one on show.
    void report(RemovedApp removed);
    // "Not Now": the banner goes, nothing else happens.
    void dismiss();
    // "Review and Remove…": proposes "Leftovers of <name>" with one item for each thing the
    // application left, each to the Trash, and the banner goes.
    void reviewAndRemove();

signals:
    void removedAppChanged();

private:
    RemovalState& removal_;
    std::optional<RemovedApp> removedApp_;
};

} // namespace dorvik
