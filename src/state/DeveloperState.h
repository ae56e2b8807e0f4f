#pragma once

// What the Developer page works from: the artifacts of the scan in force and the items of the
// developer rules, and the disks of virtual machines among the scanned files. Both lists are
// computed when asked for, from the scan and the junk findings, so a removal, an undo or a new
// scan shows in them at once. Main thread only.

#include "cleaning/DeveloperArtifacts.h"
#include "cleaning/JunkFinding.h"
#include "cleaning/VirtualDisks.h"
#include "state/MainThreadRelay.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace dorvik {

class AppState;

class DeveloperState : public QObject {
    Q_OBJECT

public:
    // `app` owns it and outlives it.
    explicit DeveloperState(AppState& app);
    ~DeveloperState() override;

    // The junk findings the developer rules' items come from; none before the first search.
    const std::optional<std::vector<JunkFinding>>& junk() const { return junk_; }
    bool isLoadingJunk() const { return isLoadingJunk_; }
    // Searches the junk on a worker; a search under way is superseded.
    void loadJunk();
    // Findings made elsewhere take the place of those searched here.
    void setJunk(std::vector<JunkFinding> junk);

    // The scan's artifacts (none without a scan), then the developer rules' items.
    std::vector<DevItem> developerItems() const;
    // The scan's virtual disks, largest first; none without a scan.
    std::vector<VirtualDisk> virtualDisks() const;

    // Puts the items before the user as the plan "Clean Developer Artifacts", each with its own
    // removal and the safety rules' verdict.
    void proposeCleaning(const std::vector<DevItem>& items);

signals:
    // Either list may read differently now.
    void changed();
    void isLoadingJunkChanged();

private:
    void setLoadingJunk(bool loading);
    void forgetRemoved(const std::set<std::string>& paths);

    AppState& app_;
    std::shared_ptr<MainThreadRelay<DeveloperState>> relay_;
    std::optional<std::vector<JunkFinding>> junk_;
    bool isLoadingJunk_ = false;
    int junkSearch_ = 0; // counts the searches; only the newest one's findings are taken
};

} // namespace dorvik
