#include "apps/UninstallPlan.h"

#include "base/PathNames.h"
#include "platform/FlatpakPlaces.h"

namespace dorvik {

PlanItem relatedPlanItem(const RelatedItem& item) {
    PlanItem planItem = makePlanItem(item.path, item.size, Removal::trash);
    planItem.name = item.label + " · " + pathName(item.path);
    return planItem;
}

std::vector<PlanItem> uninstallPlanItems(const InstalledApp& app) {
    // A Flatpak app is uninstalled by Flatpak; a bundle goes to the Trash like its data.
    const Removal removal =
        platform::flatpakAppOfFolder(app.path) ? Removal::uninstall : Removal::trash;
    PlanItem bundle = makePlanItem(app.path, app.appSize, removal);
    bundle.name = app.name;
    std::vector<PlanItem> items{std::move(bundle)};
    for (const RelatedItem& item : app.related) {
        items.push_back(relatedPlanItem(item));
    }
    return items;
}

std::string uninstallTitle(const InstalledApp& app) {
    return "Uninstall " + app.name;
}

std::vector<PlanItem> removedAppPlanItems(const RemovedApp& removed) {
    std::vector<PlanItem> items;
    for (const RelatedItem& item : removed.items) {
        items.push_back(relatedPlanItem(item));
    }
    return items;
}

std::string removedAppTitle(const RemovedApp& removed) {
    return "Leftovers of " + removed.name;
}

} // namespace dorvik
