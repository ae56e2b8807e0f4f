#pragma once

// What a page wants gone, put before the user before anything happens. Every item carries the
// verdict the user saw; only what the user confirms becomes a request for the engine, which asks
// the safety rules again.

#include "catalogue/Removal.h"
#include "removal/DeletionRequest.h"
#include "removal/SafetyVerdict.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

struct PlanItem {
    std::string path; // absolute; the item's identity
    std::string name; // the last path component
    int64_t size = 0;
    Removal removal = Removal::trash; // what the page wants for it
    SafetyVerdict verdict;            // taken when the item was made

    bool operator==(const PlanItem&) const = default;
};

struct DeletionPlan {
    std::string id; // a new UUID for each plan
    std::string title;
    std::vector<PlanItem> items; // in page order

    bool operator==(const DeletionPlan&) const = default;
};

// The titles of the plans that have no name in them.
namespace PlanTitles {
inline constexpr std::string_view deleteItems = "Delete Items";
inline constexpr std::string_view cleanJunk = "Clean Junk";
inline constexpr std::string_view cleanDeveloperArtifacts = "Clean Developer Artifacts";
inline constexpr std::string_view deleteDuplicateCopies = "Delete Duplicate Copies";
inline constexpr std::string_view emptyTheTrash = "Empty the Trash";
inline constexpr std::string_view deleteInstallers = "Delete installers";
inline constexpr std::string_view deleteAppLeftovers = "Delete App Leftovers";
} // namespace PlanTitles

// An item for `path`, judged by the safety rules now. Its path is the one the removal would act
// on: the folders above the last name resolved as the system resolves them (links, "..").
// It is never left out for its risk: the user sees what the program refuses.
PlanItem makePlanItem(const std::string& path, int64_t size, Removal removal);

// A plan with a new id of the items that have no ancestor among the others, in their order, each
// path once, so that nothing is counted or deleted twice. None for no items.
std::optional<DeletionPlan> makePlan(const std::vector<PlanItem>& items, std::string title);

// The requests for what was confirmed: the safe items, and the review items only when the user
// accepted them; never the protected ones. Each goes as the item says, or for good instead of to
// the Trash when the user's setting asks every removal to bypass the Trash.
std::vector<DeletionRequest> planRequests(const DeletionPlan& plan, bool includeReview,
                                          bool permanentDelete);

// The plan's items by risk, each list in plan order: safe, review, protected.
std::array<std::vector<PlanItem>, 3> itemsByRisk(const DeletionPlan& plan);

// The bytes of what would go now: the safe items, and the review items when accepted.
int64_t plannedTotal(const DeletionPlan& plan, bool acceptedReview);

} // namespace dorvik
