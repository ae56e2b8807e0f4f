#include "removal/DeletionPlan.h"

#include "base/PathNames.h"
#include "base/Uuid.h"
#include "platform/ResolvedPath.h"
#include "removal/SafetyRules.h"

#include <set>

namespace dorvik {

namespace {

bool goes(const PlanItem& item, bool includeReview) {
    return item.verdict.risk == Risk::safe || (item.verdict.risk == Risk::review && includeReview);
}

// Whether one of the folders holding `path`, the root aside, is itself in the set.
bool hasAncestorIn(const std::set<std::string>& paths, const std::string& path) {
    for (std::string folder = parentPath(path); !folder.empty() && folder != "/";
         folder = parentPath(folder)) {
        if (paths.contains(folder)) {
            return true;
        }
    }
    return false;
}

} // namespace

PlanItem makePlanItem(const std::string& givenPath, int64_t size, Removal removal) {
    // The path the removal would act on, so that the user sees and the rules judge what would go.
    std::string path = platform::withResolvedFolders(givenPath);
    std::string name = pathName(path);
    SafetyVerdict verdict = SafetyRules::verdict(path);
    return PlanItem{std::move(path), std::move(name), size, removal, std::move(verdict)};
}

std::optional<DeletionPlan> makePlan(const std::vector<PlanItem>& items, std::string title) {
    if (items.empty()) {
        return std::nullopt;
    }
    std::set<std::string> paths;
    for (const PlanItem& item : items) {
        paths.insert(item.path);
    }
    DeletionPlan plan{Uuid::make(), std::move(title), {}};
    std::set<std::string> planned;
    for (const PlanItem& item : items) {
        // An item is its path: the same path again is the same item, listed and counted once.
        if (!hasAncestorIn(paths, item.path) && planned.insert(item.path).second) {
            plan.items.push_back(item);
        }
    }
    return plan;
}

std::vector<DeletionRequest> planRequests(const DeletionPlan& plan, bool includeReview,
                                          bool permanentDelete) {
    std::vector<DeletionRequest> requests;
    for (const PlanItem& item : plan.items) {
        if (goes(item, includeReview)) {
            // "Delete permanently" stands for the Trash; an uninstall is no Trash's business.
            const bool bypassTrash = permanentDelete && item.removal == Removal::trash;
            requests.push_back(makeDeletionRequest(
                item.path, item.size, bypassTrash ? Removal::permanent : item.removal));
        }
    }
    return requests;
}

std::array<std::vector<PlanItem>, 3> itemsByRisk(const DeletionPlan& plan) {
    std::array<std::vector<PlanItem>, 3> lists;
    for (const PlanItem& item : plan.items) {
        lists[static_cast<size_t>(item.verdict.risk)].push_back(item);
    }
    return lists;
}

int64_t plannedTotal(const DeletionPlan& plan, bool acceptedReview) {
    int64_t total = 0;
    for (const PlanItem& item : plan.items) {
        if (goes(item, acceptedReview)) {
            total += item.size;
        }
    }
    return total;
}

} // namespace dorvik
