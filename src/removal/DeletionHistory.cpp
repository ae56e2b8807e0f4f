#include "removal/DeletionHistory.h"

#include "platform/ApplicationSupport.h"
#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/LockedFile.h"
#include "platform/TrashRestore.h"
#include "removal/DeletionEngine.h"
#include "removal/HistoryJournal.h"

#include <algorithm>
#include <set>

namespace dorvik {

namespace {

std::optional<std::vector<HistoryEntry>> decodeBytes(const std::optional<std::string>& text) {
    if (!text) {
        return std::nullopt;
    }
    return HistoryFile::decode(*text);
}

// Puts the entries not in `log` yet in front of it, in their order.
void putInFront(std::vector<HistoryEntry>& log, const std::vector<HistoryEntry>& entries) {
    std::set<std::string> present;
    for (const HistoryEntry& entry : log) {
        present.insert(entry.id);
    }
    std::vector<HistoryEntry> added;
    for (const HistoryEntry& entry : entries) {
        if (present.insert(entry.id).second) {
            added.push_back(entry);
        }
    }
    log.insert(log.begin(), added.begin(), added.end());
}

} // namespace

DeletionHistory::DeletionHistory(std::string fileURL) : fileURL_(std::move(fileURL)) {
    if (!leftOverJournals(fileURL_).empty()) {
        update([](std::vector<HistoryEntry>&) {});
        return;
    }
    reload();
}

std::string DeletionHistory::defaultPath() {
    return platform::applicationSupportDirectory() + "/" + std::string(HistoryFile::fileName);
}

bool DeletionHistory::reload() {
    const auto bytes = platform::readWholeFile(fileURL_, HistoryFile::maximumFileBytes);
    if (!bytes) {
        return false;
    }
    auto decoded = HistoryFile::decode(
        std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()));
    if (!decoded || *decoded == entries_) {
        return false;
    }
    entries_ = std::move(*decoded);
    return true;
}

void DeletionHistory::update(const std::function<void(std::vector<HistoryEntry>&)>& change,
                             HistoryJournal* finished) {
    const platform::LockedFile file(fileURL_);
    std::vector<HistoryEntry> log =
        decodeBytes(file.read(HistoryFile::maximumFileBytes)).value_or(entries_);
    // Journals are checked only under the lock, so no two writers fold one twice.
    const std::vector<std::string> journals = leftOverJournals(fileURL_);
    // In the order they went, as a batch is recorded.
    putInFront(log, journalEntries(journals));
    change(log);
    if (log.size() > maximumEntries) {
        log.resize(maximumEntries);
    }
    if (file.write(HistoryFile::encode(log))) {
        for (const std::string& path : journals) {
            platform::removeFile(path);
        }
        if (finished != nullptr) {
            finished->discard();
        }
    }
    entries_ = std::move(log);
}

void DeletionHistory::record(const std::vector<HistoryEntry>& batch, HistoryJournal* finished) {
    update([&batch](std::vector<HistoryEntry>& log) { putInFront(log, batch); }, finished);
}

std::optional<platform::FileError> DeletionHistory::restore(const HistoryEntry& entry) {
    if (!entry.trashPath) {
        return std::nullopt;
    }
    if (auto error =
            platform::restoreFromTrash(*entry.trashPath, entry.originalPath, entry.trashedItem)) {
        return error;
    }
    update([&entry](std::vector<HistoryEntry>& log) {
        const auto found = std::ranges::find(log, entry.id, &HistoryEntry::id);
        if (found != log.end()) {
            found->restored = true;
        }
    });
    return std::nullopt;
}

void DeletionHistory::clear() {
    std::set<std::string> seen;
    for (const HistoryEntry& entry : entries_) {
        seen.insert(entry.id);
    }
    update([&seen](std::vector<HistoryEntry>& log) {
        std::erase_if(log, [&seen](const HistoryEntry& entry) { return seen.contains(entry.id); });
    });
}

std::string_view historyMethod(const HistoryEntry& entry) {
    if (entry.restored) {
        return "Restored";
    }
    return entry.trashPath ? "Trash" : "Deleted";
}

bool canRestore(const HistoryEntry& entry) {
    return !entry.restored && entry.trashPath && platform::pathExists(*entry.trashPath) &&
           !platform::pathExists(entry.originalPath);
}

namespace {

// Why the entry cannot be restored as it stands; none when it may be tried.
std::optional<std::string> whyNot(const HistoryEntry& entry) {
    if (!entry.trashPath) {
        return "It was deleted permanently, not moved to the Trash.";
    }
    if (entry.restored) {
        return "It was restored already.";
    }
    if (!platform::pathExists(*entry.trashPath)) {
        return "It is no longer in the Trash.";
    }
    if (platform::pathExists(entry.originalPath)) {
        return "Something else is at its original place.";
    }
    return std::nullopt;
}

} // namespace

UndoReport undo(DeletionHistory& history, const std::vector<HistoryEntry>& entries) {
    UndoReport report;
    for (const HistoryEntry& given : entries) {
        // The log knows best whether it came back already (a toast holds older copies).
        const auto stored = std::ranges::find(history.entries(), given.id, &HistoryEntry::id);
        const HistoryEntry entry = stored != history.entries().end() ? *stored : given;
        if (auto reason = whyNot(entry)) {
            report.failures.push_back({entry, std::move(*reason)});
        } else if (const auto error = history.restore(entry)) {
            report.failures.push_back({entry, DeletionEngine::failureReason(*error)});
        } else {
            ++report.restored;
            report.restoredPaths.push_back(entry.originalPath);
        }
    }
    return report;
}

} // namespace dorvik
