#include "cli/LeftoversReport.h"

#include "base/TextForms.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <ostream>

namespace dorvik::cli {

void printLeftovers(std::ostream& out, const std::vector<Leftover>& leftovers) {
    if (leftovers.empty()) {
        out << "No leftovers found.\n";
        return;
    }
    int64_t total = 0;
    for (const Leftover& leftover : leftovers) {
        total += leftover.size;
        out << std::setw(10) << TextForms::size(leftover.size) << "  "
            << (leftover.modified ? TextForms::abbreviatedDate(*leftover.modified) : "—") << "  "
            << quotedForTerminal(leftover.identifier) << " (" << leftover.location << ")  "
            << shownPath(leftover.path) << "\n";
    }
    out << "Total: " << TextForms::size(total) << ", "
        << TextForms::counted(static_cast<int64_t>(leftovers.size()), "item", "items") << "\n";
}

nlohmann::json leftoversJson(const std::vector<Leftover>& leftovers) {
    nlohmann::json list = nlohmann::json::array();
    for (const Leftover& leftover : leftovers) {
        list.push_back({
            {"path", platform::JsonCoding::escapedPath(leftover.path)},
            {"identifier", platform::JsonCoding::escapedPath(leftover.identifier)},
            {"location", leftover.location},
            {"size", leftover.size},
            {"modified", leftover.modified ? nlohmann::json(*leftover.modified) : nlohmann::json()},
        });
    }
    return {{"leftovers", std::move(list)}};
}

} // namespace dorvik::cli
