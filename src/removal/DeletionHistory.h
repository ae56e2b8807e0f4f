#pragma once

// The log of everything Dorvik removed, across launches, and what undo works from: an entry with
// a trashPath can be moved back. One JSON file that the application, dorvik-cli and the
// background tick share: every change is made under the file's lock to what the file holds at
// that moment (entries another process added stay, a "restored" mark made elsewhere stays), then
// written whole and atomically, and the log in memory becomes what was written. A batch's own
// journal, and those that killed batches left, are folded in on the way. Persistence never
// reports anything: a file that cannot be read counts as the log in memory (and the next save
// replaces it), a failed write leaves the log in memory as it is. Main thread only: the AppState
// owns it and announces its changes.

#include "platform/FileError.h"
#include "removal/HistoryEntry.h"
#include "removal/HistoryFile.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

class HistoryJournal;

class DeletionHistory {
public:
    static constexpr size_t maximumEntries = HistoryFile::maximumEntries;

    // Reads the file at once, folding in what killed batches left.
    explicit DeletionHistory(std::string fileURL);

    // "history.json" in the application-support folder.
    static std::string defaultPath();

    // Newest first.
    const std::vector<HistoryEntry>& entries() const { return entries_; }
    const std::string& fileURL() const { return fileURL_; }

    // Reads the file again, as another process may have changed it. True when the log changed.
    bool reload();

    // Puts the batch, in its order, in front of the log (an entry already there stays where it
    // is), keeps the newest 5,000 and saves. `finished`, the batch's journal, goes once the
    // batch is saved.
    void record(const std::vector<HistoryEntry>& batch, HistoryJournal* finished = nullptr);

    // Moves a trashed entry's item back to its original path, making the folders above it as
    // needed, marks the entry restored and saves. Never replaces anything at the original path,
    // and restores only what the Trash itself says came from there (see platform/TrashRestore).
    // An entry without a trashPath is left alone, without error. The error when a check, the
    // folders or the move fail.
    std::optional<platform::FileError> restore(const HistoryEntry& entry);

    // Takes every entry this log holds out of the file (one added meanwhile by another process
    // stays) and saves.
    void clear();

private:
    // Under the file's lock: the file as it is now, journals of ended batches folded in,
    // `change` applied, the newest 5,000 written; the log becomes the result.
    void update(const std::function<void(std::vector<HistoryEntry>&)>& change,
                HistoryJournal* finished = nullptr);

    std::string fileURL_;
    std::vector<HistoryEntry> entries_;
};

// How the entry went, as the History page says it: "Restored", "Trash" or "Deleted".
std::string_view historyMethod(const HistoryEntry& entry);

// Whether the entry can be brought back now: not restored yet, trashed, something still lies at
// its trashPath (the Trash was not emptied), and nothing stands at its original path. The History
// page offers "Restore" on the same test.
bool canRestore(const HistoryEntry& entry);

struct UndoFailure {
    HistoryEntry entry;
    std::string reason; // a sentence for the user
};

struct UndoReport {
    int restored = 0;
    std::vector<std::string> restoredPaths; // the original paths of the items that came back
    std::vector<UndoFailure> failures;      // in the order given
};

// Restores, in order, those entries that can be restored. Each one that can't, or whose restore
// fails, is a failure with its reason: the program never overwrites and never restores under a
// new name.
UndoReport undo(DeletionHistory& history, const std::vector<HistoryEntry>& entries);

} // namespace dorvik
