#include "removal/PlanTexts.h"

namespace dorvik::PlanTexts {

std::string_view headline(bool permanentDelete) {
    return permanentDelete ? "These will be deleted permanently. They can't be recovered."
                           : "They'll go to the Trash (regenerable caches are deleted directly). "
                             "You can undo this from History.";
}

std::string reviewConsent(size_t reviewCount) {
    return "I\u2019ve reviewed the " + std::to_string(reviewCount) +
           " item(s) marked **Review** and want to delete them";
}

std::string protectedNote(size_t protectedCount) {
    return std::to_string(protectedCount) + " protected item(s) won\u2019t be touched.";
}

std::optional<std::string_view> uninstallNote(const DeletionPlan& plan) {
    for (const PlanItem& item : plan.items) {
        if (item.removal == Removal::uninstall && item.verdict.risk != Risk::protected_) {
            return "Flatpak uninstalls the app itself: it can\u2019t be put back from the Trash or "
                   "from History. Its data goes to the Trash.";
        }
    }
    return std::nullopt;
}

std::string_view confirmButton(bool permanentDelete) {
    return permanentDelete ? "Delete Permanently" : "Delete";
}

} // namespace dorvik::PlanTexts
