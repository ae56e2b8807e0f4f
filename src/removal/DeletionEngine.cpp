#include "removal/DeletionEngine.h"

#include "base/Dates.h"
#include "base/Uuid.h"
#include "platform/FileSystem.h"
#include "platform/FlatpakPlaces.h"
#include "platform/FlatpakUninstall.h"
#include "platform/PinnedFolder.h"
#include "platform/RemoveItem.h"
#include "platform/Trash.h"
#include "platform/TrashRestore.h"
#include "removal/HistoryJournal.h"
#include "removal/SafetyRules.h"

#include <cerrno>

namespace dorvik::DeletionEngine {

namespace {

constexpr std::string_view noPermission =
    "No permission. It may need Full Disk Access, or it belongs to another user.";
constexpr std::string_view noLongerExists = "No longer exists.";
constexpr std::string_view inUse = "In use. Quit the app that uses it, then try again.";
constexpr std::string_view mountedHere =
    "Another disk or folder is mounted here. It was left alone.";
constexpr std::string_view movedMeanwhile =
    "A folder above it was moved or replaced while it was checked. Nothing was touched.";
constexpr std::string_view flatpakAppsGoByUninstall =
    "A Flatpak app is removed by uninstalling it, which asks Flatpak. It was left alone.";
constexpr std::string_view onlyFlatpakAppsUninstall = "Only a Flatpak app can be uninstalled.";
constexpr std::string_view leftInPlace = "Flatpak reported no error, yet the app is still there.";

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

namespace {

// Why the folder that holds an item could not be held: a link put on the way, or a folder
// replaced by something else, is a folder that moved; the rest in the usual words.
std::string pinFailureReason(const platform::FileError& error, int errorNumber) {
    if (errorNumber == ELOOP || errorNumber == ENOTDIR) {
        return std::string(movedMeanwhile);
    }
    return failureReason(error);
}

// Uninstalls the app with Flatpak. The entry of the history when it went, with no Trash path:
// nothing can bring it back. Otherwise the failure is in the report.
std::optional<HistoryEntry> uninstalled(const DeletionRequest& request,
                                        const platform::FlatpakAppFolder& app,
                                        DeletionReport& report,
                                        const platform::ProcessRunner& runTool) {
    if (auto problem = platform::uninstallFlatpakApp(app, runTool)) {
        report.failures.push_back(failure(request.path, std::move(*problem)));
        return std::nullopt;
    }
    if (platform::pathExists(request.path)) {
        report.failures.push_back(failure(request.path, std::string(leftInPlace)));
        return std::nullopt;
    }
    report.freed += request.size;
    return HistoryEntry{Uuid::make(), Dates::now(), request.path, std::nullopt,
                        request.size, false,        std::nullopt};
}

} // namespace

DeletionOutcome run(const std::vector<DeletionRequest>& requests, HistoryJournal* journal,
                    const platform::ProcessRunner& runTool) {
    DeletionOutcome outcome;
    DeletionReport& report = outcome.report;
    for (const DeletionRequest& request : requests) {
        // The folder that holds the item is held before it is judged, reached without following
        // any link; whatever happens to the path afterwards, the removal acts inside that folder.
        const auto split = platform::splitItemPath(request.path);
        const platform::PinnedFolder folder(split ? split->folder : std::string());

        // The last word: an application started since the plan was shown is protected now.
        SafetyVerdict verdict = SafetyRules::verdict(request.path);
        if (verdict.risk == Risk::protected_) {
            report.skippedProtected.push_back(failure(request.path, std::move(verdict.reason)));
            continue;
        }
        const auto flatpakApp = platform::flatpakAppOfFolder(request.path);
        if (flatpakApp.has_value() != (request.removal == Removal::uninstall)) {
            report.failures.push_back(failure(
                request.path,
                std::string(flatpakApp ? flatpakAppsGoByUninstall : onlyFlatpakAppsUninstall)));
            continue;
        }
        if (flatpakApp) {
            if (auto entry = uninstalled(request, *flatpakApp, report, runTool)) {
                if (journal != nullptr) {
                    journal->recorded(*entry);
                }
                report.deletedPaths.push_back(request.path);
                outcome.entries.push_back(std::move(*entry));
            }
            continue;
        }
        if (!split) {
            report.failures.push_back(
                failure(request.path, failureReason(platform::fileErrorFromNumber(EINVAL))));
            continue;
        }
        if (!folder.isOpen()) {
            report.failures.push_back(
                failure(request.path, pinFailureReason(*folder.error(), folder.errorNumber())));
            continue;
        }
        // What was judged is the folder the path leads to now: it must be the one held.
        if (!folder.stillAt(split->folder)) {
            report.failures.push_back(failure(request.path, std::string(movedMeanwhile)));
            continue;
        }
        HistoryEntry entry{Uuid::make(), Dates::now(), request.path, std::nullopt,
                           request.size, false,        std::nullopt};
        if (request.removal == Removal::trash) {
            platform::TrashOutcome trashed = platform::moveToTrashAt(
                folder, split->name, [&](const platform::TrashClaim& claim) {
                    if (journal != nullptr) {
                        journal->claimed(entry, claim);
                    }
                });
            if (trashed.error) {
                report.failures.push_back(failure(request.path, failureReason(*trashed.error)));
                continue;
            }
            report.movedToTrash += request.size;
            entry.trashPath = std::move(trashed.trashedPath);
            entry.trashedItem = trashed.item;
        } else {
            const platform::RemovalResult removed = platform::removeItemAt(folder, split->name);
            if (removed.error) {
                report.failures.push_back(failure(request.path, failureReason(*removed.error)));
                if (removed.partlyRemoved) {
                    report.partlyDeletedPaths.push_back(request.path);
                }
                continue;
            }
            report.freed += request.size;
        }
        // An item that left a trash takes its Trash information with it.
        platform::forgetTrashInfo(folder, split->folder, split->name);
        entry.date = Dates::now();
        if (journal != nullptr) {
            journal->recorded(entry);
        }
        report.deletedPaths.push_back(request.path);
        outcome.entries.push_back(std::move(entry));
    }
    return outcome;
}

} // namespace dorvik::DeletionEngine
