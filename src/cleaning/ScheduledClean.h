#pragma once

// What the scheduled clean may take while nobody watches: only the rules that are safe, that
// Quick Clean takes, and that delete for good, never a Trash. Nothing that would go to the Trash
// is touched, and the Trash is never emptied unattended.

#include "catalogue/JunkRule.h"
#include "cleaning/JunkFinding.h"
#include "removal/DeletionRequest.h"

#include <vector>

namespace dorvik::ScheduledClean {

bool mayCleanUnattended(const JunkRule& rule);

// The junk finder over those rules alone; findings without items are left out.
std::vector<JunkFinding> find();

// A permanent removal for each item of each finding of a rule the clean may take; the findings
// of other rules are passed over.
std::vector<DeletionRequest> requests(const std::vector<JunkFinding>& findings);

} // namespace dorvik::ScheduledClean
