#include "removal/Toast.h"

#include "base/TextForms.h"
#include "base/Uuid.h"

namespace dorvik {

Toast deletionToast(const DeletionReport& report, const std::vector<HistoryEntry>& entries,
                    FailureDetails failureDetails) {
    Toast toast{Uuid::make(), "", std::nullopt, {}};
    if (report.deletedPaths.empty() && !report.partlyDeletedPaths.empty()) {
        toast.message =
            std::to_string(report.partlyDeletedPaths.size()) + " item(s) only partly deleted";
    } else if (report.deletedPaths.empty()) {
        toast.message = "Nothing was deleted";
    } else if (report.freed >= 1 && report.movedToTrash >= 1) {
        toast.message = TextForms::size(report.freed) + " freed \u00B7 " +
                        TextForms::size(report.movedToTrash) + " in the Trash";
    } else if (report.movedToTrash < 1) {
        toast.message = TextForms::size(report.freed) + " freed";
    } else {
        toast.message = TextForms::size(report.movedToTrash) + " moved to the Trash";
    }
    const size_t refused = report.failures.size() + report.skippedProtected.size();
    toast.warning = refused >= 1 || report.deletedPaths.empty();
    if (refused >= 1) {
        toast.detail =
            std::to_string(refused) + (failureDetails == FailureDetails::inHistory
                                           ? " item(s) couldn't be deleted. Details in History."
                                           : " item(s) couldn't be deleted:");
    }
    for (const HistoryEntry& entry : entries) {
        if (entry.trashPath) {
            toast.undoable.push_back(entry);
        }
    }
    return toast;
}

Toast undoToast(int restoredCount) {
    return Toast{Uuid::make(),
                 std::to_string(restoredCount) + " item(s) restored",
                 "Scan again to see updated sizes.",
                 {},
                 restoredCount == 0};
}

} // namespace dorvik
