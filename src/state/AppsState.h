#pragma once

// The installed applications as the Applications page shows them, and their uninstall. A load
// inspects every bundle on a worker; a removal that takes a bundle or its data away drops the
// bundle's row at once and loads the list again, so that sizes stay true. Main thread only.

#include "apps/InstalledApp.h"
#include "state/MainThreadRelay.h"

#include <QObject>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace dorvik {

class AppState;

class AppsState : public QObject {
    Q_OBJECT

public:
    // `app` owns it and outlives it.
    explicit AppsState(AppState& app);
    ~AppsState() override;

    // Largest total first; empty before the first load.
    const std::vector<InstalledApp>& apps() const { return apps_; }
    bool appsLoading() const { return appsLoading_; }

    // The first visit's load: nothing when the list is there or a load is under way.
    void load();
    // Loads the list afresh unless a load is under way.
    void refresh();

    // The identifiers of the applications running at this moment, asked afresh at each call.
    static std::vector<std::string> runningIdentifiers();

    // Puts the application and all its data before the user as the plan "Uninstall <name>".
    // An Apple application, or one running now, is refused: no plan, and false.
    bool uninstall(const InstalledApp& app);

signals:
    void appsChanged();
    void appsLoadingChanged();

private:
    void finishLoad(std::vector<InstalledApp> apps);
    void setAppsLoading(bool loading);
    // A removal that touched a bundle or its data: its row goes, and the list is loaded again.
    void followRemoval(const std::set<std::string>& paths);

    AppState& app_;
    std::shared_ptr<MainThreadRelay<AppsState>> relay_;
    std::vector<InstalledApp> apps_;
    bool appsLoading_ = false;
    // A removal landed while a load ran: that load may have measured what went, so another
    // follows it.
    bool loadAgain_ = false;
};

} // namespace dorvik
