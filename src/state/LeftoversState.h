#pragma once

// The App Leftovers page's list: data in the Library from applications no longer installed, as
// the last search found it. A search runs on a worker, one at a time; after any removal the items
// that went are taken out here. Main thread only.

#include "apps/LeftoverSearch.h"
#include "state/MainThreadRelay.h"

#include <QObject>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace dorvik {

class RemovalState;

class LeftoversState : public QObject {
    Q_OBJECT

public:
    // The identifiers of the installed applications, asked on the main thread as a search
    // starts. Only the identifiers matter to the search.
    using IdentifierSource = std::function<std::vector<std::string>()>;

    // Proposes through `removal`, which outlives it, and follows its removals.
    explicit LeftoversState(RemovalState& removal);
    ~LeftoversState() override;

    // Largest first; empty before the first search.
    const std::vector<Leftover>& leftovers() const { return leftovers_; }
    bool isLoading() const { return loading_; }
    // Whether a search has ever finished.
    bool hasSearched() const { return searched_; }

    // Searches again, unless a search is under way.
    void refresh();
    // Leftovers found elsewhere take the place of those searched here.
    void setLeftovers(std::vector<Leftover> leftovers);

    // Where the installed identifiers come from; by default the bundles of the application
    // roots, read one by one.
    void setInstalledIdentifiers(IdentifierSource source);

    // Puts the leftovers before the user as the plan "Delete App Leftovers", each to the Trash
    // with the safety rules' verdict.
    void proposeRemoval(const std::vector<Leftover>& selected);

signals:
    void leftoversChanged();
    void loadingChanged();

private:
    void finishSearch(std::vector<Leftover> found);
    void markRemoved(const std::set<std::string>& paths);

    RemovalState& removal_;
    std::shared_ptr<MainThreadRelay<LeftoversState>> relay_;
    IdentifierSource installedIdentifiers_;
    std::vector<Leftover> leftovers_;
    bool loading_ = false;
    bool searched_ = false;
};

} // namespace dorvik
