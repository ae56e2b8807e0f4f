#pragma once

// The log of everything Dorvik removed, across launches, and what undo works from: an entry with
// a trashPath can be moved back. One JSON file, read once when the history is made and rewritten
// whole and atomically at each change. Persistence never reports anything: a file that cannot be
// read leaves the log empty (and the next save replaces it), a failed write leaves the log in
// memory as it is. Main thread only: the AppState owns it and announces its changes.

#include "platform/FileError.h"
#include "removal/HistoryEntry.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

class DeletionHistory {
public:
    static constexpr size_t maximumEntries = 5000;

    // Reads the file at once.
    explicit DeletionHistory(std::string fileURL);

    // "history.json" in the application-support folder.
    static std::string defaultPath();

    // Newest first.
    const std::vector<HistoryEntry>& entries() const { return entries_; }
    const std::string& fileURL() const { return fileURL_; }

    // Puts the batch, in its order, in front of the log, keeps the newest 5,000 and saves.
    void record(const std::vector<HistoryEntry>& batch);

    // Moves a trashed entry's item back to its original path, making the folders above it as
    // needed, marks the entry restored and saves. Never replaces anything at the original path.
    // An entry without a trashPath is left alone, without error. The error when the folders or
    // the move fail.
    std::optional<platform::FileError> restore(const HistoryEntry& entry);

    // Empties the log and saves.
    void clear();

private:
    void save() const;

    std::string fileURL_;
    std::vector<HistoryEntry> entries_;
};

// How the entry went, as the History page says it: "Restored", "Trash" or "Deleted".
std::string_view historyMethod(const HistoryEntry& entry);

// Whether the entry can be brought back now: not restored yet, trashed, something still lies at
// its trashPath (the Trash was not emptied), and nothing stands at its original path. The History
// page offers "Restore" on the same test.
bool canRestore(const HistoryEntry& entry);

// Restores, in order, those entries that can be restored, and returns how many came back. Entries
// that can't are skipped silently, and so is a restore that fails: the program never overwrites
// and never restores under a new name.
int undo(DeletionHistory& history, const std::vector<HistoryEntry>& entries);

} // namespace dorvik
