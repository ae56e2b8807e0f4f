#include "state/OverviewActions.h"

#include "cleaning/DeveloperArtifacts.h"
#include "platform/HomeDirectory.h"
#include "removal/DeletionPlan.h"
#include "scanning/NodeLookup.h"
#include "state/AppState.h"

namespace dorvik {

namespace {

void proposeItems(AppState& state, const std::vector<JunkItem>& items, Removal removal,
                  std::string_view title) {
    std::vector<PlanItem> planItems;
    planItems.reserve(items.size());
    for (const JunkItem& item : items) {
        planItems.push_back(makePlanItem(item.url, item.size, removal));
    }
    state.removal().propose(planItems, std::string(title));
}

} // namespace

std::vector<Recommendation> currentRecommendations(const AppState& state, double now) {
    RecommendationSources sources;
    sources.scan = state.scan() ? &*state.scan() : nullptr;
    sources.junk = state.junk().findings();
    sources.home = platform::homeDirectory();
    sources.now = now;
    // The developer rules' items come from the Developer page's own search when it made one.
    const auto& developerJunk = state.developer().junk();
    for (const DevItem& item : developerItems(
             sources.scan, developerJunk ? *developerJunk : sources.junk, sources.home)) {
        sources.developerArtifacts += item.size;
    }
    return recommendations(sources);
}

void carryOutRecommendation(AppState& state, const Recommendation& recommendation) {
    namespace Ids = RecommendationIds;
    const std::string& id = recommendation.id;
    if (id == Ids::junk) {
        state.setSection(AppSection::smartClean);
        state.quickClean().start();
    } else if (id == Ids::trash) {
        proposeItems(state, recommendation.items, Removal::permanent, PlanTitles::emptyTheTrash);
    } else if (id == Ids::installers) {
        proposeItems(state, recommendation.items, Removal::trash, PlanTitles::deleteInstallers);
    } else if (id == Ids::backups) {
        state.setSection(AppSection::junk);
    } else if (id == Ids::oldLargeFiles) {
        state.setLargeFilter(oldLargeFilesFilter(platform::homeDirectory()));
        state.setSection(AppSection::large);
    } else if (id == Ids::developer) {
        state.setSection(AppSection::developer);
    } else if (id == Ids::downloads && state.scan()) {
        state.revealNode(findNode(state.scan()->root, recommendation.folder));
    }
}

bool openInExplorer(AppState& state, const std::string& path) {
    if (!state.scan()) {
        return false;
    }
    const FileNodePtr node = findNode(state.scan()->root, path);
    if (node == nullptr) {
        return false;
    }
    state.revealNode(node);
    return true;
}

} // namespace dorvik
