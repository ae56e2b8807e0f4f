// dorvik-cli history: the deletion log the application keeps, newest first.

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "cli/Commands.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "removal/DeletionHistory.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>

namespace dorvik::cli {

namespace {

void printText(const std::vector<HistoryEntry>& entries) {
    if (entries.empty()) {
        std::cout << "Nothing deleted yet.\n";
        return;
    }
    for (const HistoryEntry& entry : entries) {
        std::cout << TextForms::abbreviatedDateTime(entry.date) << "  " << std::left << std::setw(8)
                  << historyMethod(entry) << std::right << std::setw(10)
                  << TextForms::size(entry.size) << "  " << shownPath(entry.originalPath) << "  "
                  << entry.id << (canRestore(entry) ? "  (can be restored)" : "") << "\n";
    }
}

nlohmann::json entriesJson(const std::vector<HistoryEntry>& entries) {
    nlohmann::json list = nlohmann::json::array();
    for (const HistoryEntry& entry : entries) {
        list.push_back({
            {"id", entry.id},
            {"date", entry.date},
            {"originalPath", platform::JsonCoding::escapedPath(entry.originalPath)},
            {"trashPath", entry.trashPath
                              ? nlohmann::json(platform::JsonCoding::escapedPath(*entry.trashPath))
                              : nlohmann::json()},
            {"size", entry.size},
            {"restored", entry.restored},
            {"method", historyMethod(entry)},
            {"restorable", canRestore(entry)},
        });
    }
    return {{"entries", std::move(list)}};
}

} // namespace

int runHistory(Arguments& arguments) {
    const bool json = takeJsonOption(arguments);
    const DeletionHistory history(DeletionHistory::defaultPath());
    if (json) {
        printJson(std::cout, entriesJson(history.entries()));
    } else {
        printText(history.entries());
    }
    return 0;
}

} // namespace dorvik::cli
