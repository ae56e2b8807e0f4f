#pragma once

// The short message after a removal or an undo, from which a Trash removal can be undone.

#include "removal/DeletionRequest.h"
#include "removal/HistoryEntry.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace dorvik {

struct Toast {
    std::string id; // a new UUID for each toast
    std::string message;
    std::optional<std::string> detail;
    std::vector<HistoryEntry> undoable; // what "Undo" would bring back
    bool warning = false;               // something asked for did not happen

    bool operator==(const Toast&) const = default;
};

// How long a toast stays up unless something replaces or closes it.
inline constexpr std::chrono::seconds toastDuration{8};

// Where the user finds the reasons for what was refused: the History page keeps the last run's
// failures; a terminal lists them right below the toast's lines.
enum class FailureDetails { inHistory, listedBelow };

// After a run: what was freed and what went to the Trash, kept apart; how many items were
// refused; and the run's trashed entries to undo.
Toast deletionToast(const DeletionReport& report, const std::vector<HistoryEntry>& entries,
                    FailureDetails failureDetails = FailureDetails::inHistory);

// After an undo: how many came back, zero included. Undo has no error message.
Toast undoToast(int restoredCount);

} // namespace dorvik
