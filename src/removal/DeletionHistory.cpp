#include "removal/DeletionHistory.h"

#include "platform/ApplicationSupport.h"
#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/Trash.h"
#include "removal/HistoryFile.h"

#include <algorithm>
#include <filesystem>

namespace dorvik {

namespace {

// Far beyond 5,000 entries of the longest paths; anything larger is not our file.
constexpr size_t maximumFileBytes = size_t{64} << 20;

} // namespace

DeletionHistory::DeletionHistory(std::string fileURL) : fileURL_(std::move(fileURL)) {
    const auto bytes = platform::readWholeFile(fileURL_, maximumFileBytes);
    if (!bytes) {
        return;
    }
    auto decoded = HistoryFile::decode(
        std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()));
    if (decoded) {
        entries_ = std::move(*decoded);
    }
}

std::string DeletionHistory::defaultPath() {
    return platform::applicationSupportDirectory() + "/" + std::string(HistoryFile::fileName);
}

void DeletionHistory::record(const std::vector<HistoryEntry>& batch) {
    entries_.insert(entries_.begin(), batch.begin(), batch.end());
    if (entries_.size() > maximumEntries) {
        entries_.resize(maximumEntries);
    }
    save();
}

std::optional<platform::FileError> DeletionHistory::restore(const HistoryEntry& entry) {
    if (!entry.trashPath) {
        return std::nullopt;
    }
    const std::string parent = std::filesystem::path(entry.originalPath).parent_path().string();
    if (auto error = platform::createFolders(parent)) {
        return error;
    }
    if (auto error = platform::restoreFromTrash(*entry.trashPath, entry.originalPath)) {
        return error;
    }
    const auto found = std::ranges::find(entries_, entry.id, &HistoryEntry::id);
    if (found != entries_.end()) {
        found->restored = true;
    }
    save();
    return std::nullopt;
}

void DeletionHistory::clear() {
    entries_.clear();
    save();
}

void DeletionHistory::save() const {
    platform::writeFileAtomically(fileURL_, HistoryFile::encode(entries_));
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

int undo(DeletionHistory& history, const std::vector<HistoryEntry>& entries) {
    int restored = 0;
    for (const HistoryEntry& given : entries) {
        // The log knows best whether it came back already (a toast holds older copies).
        const auto stored = std::ranges::find(history.entries(), given.id, &HistoryEntry::id);
        const HistoryEntry entry = stored != history.entries().end() ? *stored : given;
        if (canRestore(entry) && !history.restore(entry)) {
            ++restored;
        }
    }
    return restored;
}

} // namespace dorvik
