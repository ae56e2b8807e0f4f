#pragma once

// What Quick Clean's "Clean" removes: every item found by the rules the user kept ticked, each the
// way its rule says, without a plan. The engine still refuses whatever is protected.

#include "cleaning/JunkFinding.h"
#include "removal/DeletionRequest.h"

#include <set>
#include <string>
#include <vector>

namespace dorvik::QuickClean {

// The ids of the rules ticked at first: those of the catalogue that Quick Clean may take.
std::set<std::string> defaultSelection();

// A request for each item of each finding whose rule is selected, in finding order, with the
// rule's removal. The setting that bypasses the Trash plays no part here.
std::vector<DeletionRequest> requests(const std::vector<JunkFinding>& findings,
                                      const std::set<std::string>& selection);

} // namespace dorvik::QuickClean
