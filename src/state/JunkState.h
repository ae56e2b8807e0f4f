#pragma once

// The junk of this disk as the finder last saw it, shared by Quick Clean and the Junk page. A
// load runs the finder on a worker; after any removal the items that went are taken out here,
// so that the pages see what is left without a new search. Main thread only.

#include "cleaning/JunkFinding.h"
#include "state/MainThreadRelay.h"

#include <QObject>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace dorvik {

class RemovalState;

class JunkState : public QObject {
    Q_OBJECT

public:
    // Follows the removals of `removal`, which outlives it.
    explicit JunkState(RemovalState& removal);
    ~JunkState() override;

    // The last findings, largest total first; empty before the first load.
    const std::vector<JunkFinding>& findings() const { return findings_; }
    bool isLoading() const { return loading_; }

    // Runs the finder afresh and stores what it finds; `loaded` runs once the findings are in.
    // A load started meanwhile supersedes this one: every waiting `loaded` runs when the last
    // load lands.
    void load(std::function<void()> loaded = {});

signals:
    void findingsChanged();
    void loadingChanged();

private:
    void finishLoad(int generation, std::vector<JunkFinding> findings);
    // Takes out the items at or under the paths that went, and findings left with none.
    void markRemoved(const std::set<std::string>& paths);

    std::shared_ptr<MainThreadRelay<JunkState>> relay_;
    std::vector<JunkFinding> findings_;
    bool loading_ = false;
    int generation_ = 0;
    std::vector<std::function<void()>> waiting_;
};

} // namespace dorvik
