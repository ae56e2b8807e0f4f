#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/FindJunk.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iomanip>
#include <iostream>

namespace dorvik::cli {

namespace {

void printText(const std::vector<JunkFinding>& findings) {
    if (findings.empty()) {
        std::cout << "No junk found.\n";
        return;
    }
    int64_t totalBytes = 0;
    int64_t totalItems = 0;
    std::optional<JunkGroup> group;
    for (const JunkFinding& finding : findings) {
        if (finding.rule.group != group) {
            group = finding.rule.group;
            std::cout << Wording::shown(info(*group).title) << "\n";
        }
        const int64_t bytes = totalSize(finding);
        const auto count = static_cast<int64_t>(finding.items.size());
        totalBytes += bytes;
        totalItems += count;
        std::cout << "  " << Wording::shown(finding.rule.title) << ": " << TextForms::size(bytes)
                  << ", " << TextForms::counted(count, "item", "items") << " ("
                  << info(finding.rule.risk).label << ", " << outcomeLabel(finding.rule.removal)
                  << ")\n";
        const size_t shown = std::min(finding.items.size(), shownItemsPerRule);
        for (size_t index = 0; index < shown; ++index) {
            const JunkItem& item = finding.items[index];
            std::cout << "    " << std::setw(10) << TextForms::size(item.size) << "  "
                      << shownPath(item.url) << "\n";
        }
        if (finding.items.size() > shown) {
            std::cout << "    " << TextForms::count(count - static_cast<int64_t>(shown))
                      << " more\n";
        }
    }
    std::cout << "Total: " << TextForms::size(totalBytes) << ", "
              << TextForms::counted(totalItems, "item", "items") << "\n";
}

nlohmann::json findingsJson(const std::vector<JunkFinding>& findings) {
    nlohmann::json list = nlohmann::json::array();
    for (const JunkFinding& finding : findings) {
        nlohmann::json items = nlohmann::json::array();
        for (const JunkItem& item : finding.items) {
            items.push_back({
                {"path", platform::JsonCoding::escapedPath(item.url)},
                {"size", item.size},
                {"fileCount", item.fileCount},
                {"modified", item.modified ? nlohmann::json(*item.modified) : nlohmann::json()},
            });
        }
        list.push_back({
            {"rule", finding.rule.id},
            {"title", Wording::shown(finding.rule.title)},
            {"risk", info(finding.rule.risk).caseName},
            {"removal", caseName(finding.rule.removal)},
            {"items", std::move(items)},
        });
    }
    return {{"findings", std::move(list)}};
}

} // namespace

int runJunk(Arguments& arguments) {
    const bool json = takeJsonOption(arguments);
    const std::vector<JunkFinding> findings = sortedByGroup(findJunk());
    if (json) {
        printJson(std::cout, findingsJson(findings));
    } else {
        printText(findings);
    }
    return 0;
}

} // namespace dorvik::cli
