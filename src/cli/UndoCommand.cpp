// dorvik-cli undo: brings items back from the Trash to where they were, as the toast's "Undo"
// and the History page's "Restore" do. Never over anything, never under a new name.

#include "base/Uuid.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "removal/DeletionHistory.h"
#include "removal/Toast.h"
#include "scanning/ScanPaths.h"

#include <algorithm>
#include <iostream>

namespace dorvik::cli {

int runUndo(Arguments& arguments) {
    bool last = false;
    std::vector<std::string> ids;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--last") {
            last = true;
        } else if (word.starts_with("--")) {
            throw UsageError("unknown option " + word);
        } else {
            const auto id = Uuid::parse(word);
            if (!id) {
                throw UsageError("\"" + word + "\" is no entry id");
            }
            ids.push_back(*id);
        }
    }
    if (last == !ids.empty()) {
        throw UsageError("give either --last or the ids of entries");
    }
    DeletionHistory history(DeletionHistory::defaultPath());
    const std::vector<HistoryEntry>& entries = history.entries();
    std::vector<HistoryEntry> chosen;
    if (last) {
        if (entries.empty()) {
            throw InputError("the history is empty");
        }
        chosen.push_back(entries.front());
    }
    for (const std::string& id : ids) {
        const auto found = std::ranges::find(entries, id, &HistoryEntry::id);
        if (found == entries.end()) {
            throw InputError("no entry " + id + " in the history");
        }
        chosen.push_back(*found);
    }
    const UndoReport report = undo(history, chosen);
    const Toast toast = undoToast(report.restored);
    std::cout << toast.message << "\n" << toast.detail.value_or("") << "\n";
    for (const UndoFailure& failure : report.failures) {
        std::cout << "  " << displayPath(failure.entry.originalPath) << ": "
                  << Wording::shown(failure.reason) << "\n";
    }
    return report.failures.empty() ? 0 : 1;
}

} // namespace dorvik::cli
