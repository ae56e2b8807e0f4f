#pragma once

// What the Overview and the Trends page ask of the state: the recommendations of the scan in
// force and what pressing one does, and the way from a folder of the trend history to the
// explorer. The rules themselves are plain code (cleaning/Recommendations); this is where they
// meet the state.

#include "cleaning/Recommendations.h"

#include <string>
#include <vector>

namespace dorvik {

class AppState;

// The recommendations of the scan in force (those that need none without one), from the junk
// the finder last found and the developer artifacts of the scan.
std::vector<Recommendation> currentRecommendations(const AppState& state, double now);

// Does what the row says: a Quick Clean run, a plan to confirm, a page, a filter, a folder.
void carryOutRecommendation(AppState& state, const Recommendation& recommendation);

// Opens the folder at `path` (canonical, as the trend history keeps it) in the explorer when the
// scan in force holds it, walking down from the root by name. False when it does not.
bool openInExplorer(AppState& state, const std::string& path);

} // namespace dorvik
