#include "removal/DeletionEngine.h"

#include "platform/RemoveItem.h"
#include "platform/Trash.h"
#include "removal/SafetyRules.h"
#include "system/Dates.h"
#include "system/Uuid.h"

namespace dorvik::DeletionEngine {

namespace {

constexpr std::string_view noPermission =
    "No permission. It may need Full Disk Access, or it belongs to another user.";
constexpr std::string_view noLongerExists = "No longer exists.";
constexpr std::string_view inUse = "Protected by macOS or in use.";
constexpr std::string_view mountedHere =
    "Another disk or folder is mounted here. It was left alone.";

DeletionFailure failure(const std::string& path, std::string reason) {
    return DeletionFailure{Uuid::make(), path, std::move(reason)};
}

} // namespace

std::string failureReason(const platform::FileError& error) {
    switch (error.kind) {
    case platform::FileErrorKind::noPermission:
        return std::string(noPermission);
    case platform::FileErrorKind::noSuchFile:
        return std::string(noLongerExists);
    case platform::FileErrorKind::inUse:
        return std::string(inUse);
    case platform::FileErrorKind::mountPoint:
        return std::string(mountedHere);
    case platform::FileErrorKind::other:
        break;
    }
    return error.description;
}

DeletionOutcome run(const std::vector<DeletionRequest>& requests) {
    DeletionOutcome outcome;
    DeletionReport& report = outcome.report;
    for (const DeletionRequest& request : requests) {
        // The last word: an application started since the plan was shown is protected now.
        SafetyVerdict verdict = SafetyRules::verdict(request.path);
        if (verdict.risk == Risk::protected_) {
            report.skippedProtected.push_back(failure(request.path, std::move(verdict.reason)));
            continue;
        }
        HistoryEntry entry{Uuid::make(), 0, request.path, std::nullopt, request.size, false};
        if (request.removal == Removal::trash) {
            platform::TrashOutcome trashed = platform::moveToTrash(request.path);
            if (trashed.error) {
                report.failures.push_back(failure(request.path, failureReason(*trashed.error)));
                continue;
            }
            report.movedToTrash += request.size;
            entry.trashPath = std::move(trashed.trashedPath);
        } else {
            if (const auto error = platform::removeItem(request.path)) {
                report.failures.push_back(failure(request.path, failureReason(*error)));
                continue;
            }
            report.freed += request.size;
        }
        entry.date = Dates::now();
        report.deletedPaths.push_back(request.path);
        outcome.entries.push_back(std::move(entry));
    }
    return outcome;
}

} // namespace dorvik::DeletionEngine
