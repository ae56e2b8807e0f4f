#pragma once

// What a removal batch has done so far, kept beside history.json as it goes so that a batch
// killed at any moment forgets nothing. Rewriting history.json with an fsync after each item of a
// long batch would cost far too much; instead each batch has a journal of its own,
// "history.json.journal-<pid>-<number>", that grows by one line per event: a claim before an item
// moves into the Trash (the name taken, the .trashinfo written, the item's identity) and the
// entry once it went. The batch's end folds the journal into history.json; a journal whose
// process has ended is folded by the next writer of the history, which settles each claim that
// has no entry: an item that reached the Trash is adopted, the .trashinfo of one that never
// arrived is removed.

#include "platform/AppendOnlyFile.h"
#include "platform/Trash.h"
#include "removal/HistoryEntry.h"

#include <string>
#include <vector>

namespace dorvik {

class HistoryJournal {
public:
    // A new journal beside `historyFile`.
    explicit HistoryJournal(const std::string& historyFile);

    // Before the item moves: where it will lie, its .trashinfo, and what it is.
    void claimed(const HistoryEntry& entry, const platform::TrashClaim& claim);
    // The item went; `entry` is its history entry.
    void recorded(const HistoryEntry& entry);

    const std::string& path() const { return file_.path(); }
    // Removes the journal once its entries are safe in history.json.
    void discard() { file_.discard(); }

private:
    platform::AppendOnlyFile file_;
};

// The journals that processes now ended left beside `historyFile`.
std::vector<std::string> leftOverJournals(const std::string& historyFile);

// The entries of those journals, oldest first, every claim without an entry settled (so: under
// the history's lock only).
std::vector<HistoryEntry> journalEntries(const std::vector<std::string>& journals);

} // namespace dorvik
