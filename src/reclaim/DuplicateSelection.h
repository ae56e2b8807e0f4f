#pragma once

// What the user picked among the groups of duplicates, and what each action makes of it: a
// removal plan, or the pairs of copy and original to share space. Selections are sets of node
// identities.

#include "reclaim/DuplicateGroup.h"
#include "removal/DeletionPlan.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace dorvik {

using DuplicateSelection = std::set<const FileNode*>;

// True when every group keeps at least one file outside the selection, groups with nothing
// selected included. Neither action acts otherwise.
bool keepsOneCopy(const std::vector<DuplicateGroup>& groups, const DuplicateSelection& selection);

// Every group's files but its first (the oldest), shared ones included.
DuplicateSelection allCopies(const std::vector<DuplicateGroup>& groups);

// One item for the Trash per selected file, in list order.
std::vector<PlanItem> duplicatePlanItems(const std::vector<DuplicateGroup>& groups,
                                         const DuplicateSelection& selection);

// The selected files of each group paired with the group's first file outside the selection, in
// the group's order; a group whose files are all selected gives none.
std::vector<std::pair<FileNodePtr, FileNodePtr>>
sharingPairs(const std::vector<DuplicateGroup>& groups, const DuplicateSelection& selection);

// After a share: each group whose files' paths are among `converted` counts those files and the
// original they were paired with as shared. Order, ids and files stay.
void markShared(std::vector<DuplicateGroup>& groups, const DuplicateSelection& selection,
                const std::vector<std::string>& converted);

} // namespace dorvik
