#pragma once

// What uninstalling an application, or cleaning up after one already gone, puts in a removal
// plan. Everything goes to the Trash, so both can be undone from the history, except a Flatpak
// app itself, which Flatpak uninstalls.

#include "apps/InstalledApp.h"
#include "removal/DeletionPlan.h"

#include <string>
#include <vector>

namespace dorvik {

// One item for data outside a bundle, named "<label> · <last path component>".
PlanItem relatedPlanItem(const RelatedItem& item);

// The bundle (or Flatpak app) under the application's name, then each related item in order.
std::vector<PlanItem> uninstallPlanItems(const InstalledApp& app);

// "Uninstall <name>".
std::string uninstallTitle(const InstalledApp& app);

// One item per thing the removed application left.
std::vector<PlanItem> removedAppPlanItems(const RemovedApp& removed);

// "Leftovers of <name>".
std::string removedAppTitle(const RemovedApp& removed);

} // namespace dorvik
