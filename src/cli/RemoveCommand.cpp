// dorvik-cli remove: the plan that "Delete Items" makes of a selection, shown by risk, confirmed,
// and carried out by the engine.

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/RemovalRun.h"
#include "cli/TerminalText.h"
#include "platform/FileSystem.h"
#include "platform/JsonCoding.h"
#include "removal/DeletionPlan.h"
#include "removal/PlanTexts.h"
#include "scanning/MeasureFolder.h"

#include <iomanip>
#include <iostream>

namespace dorvik::cli {

namespace {

int64_t totalSize(const std::vector<PlanItem>& items) {
    int64_t total = 0;
    for (const PlanItem& item : items) {
        total += item.size;
    }
    return total;
}

void printPlan(const DeletionPlan& plan, bool permanent, bool includeReview) {
    std::cout << Wording::shown(plan.title) << "\n" << PlanTexts::headline(permanent) << "\n";
    if (const auto note = PlanTexts::uninstallNote(plan)) {
        std::cout << *note << "\n";
    }
    const auto lists = itemsByRisk(plan);
    for (Risk risk : allRisks) {
        const std::vector<PlanItem>& items = lists[static_cast<size_t>(risk)];
        if (items.empty()) {
            continue;
        }
        std::cout << "\n"
                  << info(risk).label << ": " << items.size() << " \u00B7 "
                  << TextForms::size(totalSize(items)) << "\n";
        for (const PlanItem& item : items) {
            std::cout << "  " << std::setw(10) << TextForms::size(item.size) << "  "
                      << shownPath(item.path) << "  (" << Wording::shown(item.verdict.reason)
                      << ")\n";
        }
    }
    std::cout << "\n";
    const size_t reviewCount = lists[static_cast<size_t>(Risk::review)].size();
    if (reviewCount > 0 && !includeReview) {
        std::cout << reviewCount << " item(s) marked Review stay; add --include-review to delete "
                  << "them too.\n";
    }
    const size_t protectedCount = lists[static_cast<size_t>(Risk::protected_)].size();
    if (protectedCount > 0) {
        std::cout << PlanTexts::protectedNote(protectedCount) << "\n";
    }
    std::cout << "Total: " << TextForms::size(plannedTotal(plan, includeReview)) << "\n";
}

} // namespace

int runRemove(Arguments& arguments) {
    bool permanent = false;
    bool includeReview = false;
    bool yes = false;
    std::vector<std::string> paths;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--permanent") {
            permanent = true;
        } else if (word == "--include-review") {
            includeReview = true;
        } else if (word == "--yes") {
            yes = true;
        } else if (word.starts_with("--")) {
            throw UsageError("unknown option " + word);
        } else {
            paths.push_back(absolutePath(word));
        }
    }
    if (paths.empty()) {
        throw UsageError("no path given");
    }
    std::vector<PlanItem> items;
    for (const std::string& path : paths) {
        if (!platform::pathExists(path)) {
            throw InputError("nothing at " + path);
        }
        // One folder at a time while the user waits: it may take every processor.
        items.push_back(
            makePlanItem(path, measureFolder(path, machineThreads()).bytes, Removal::trash));
    }
    const DeletionPlan plan = *makePlan(items, std::string(PlanTitles::deleteItems));
    printPlan(plan, permanent, includeReview);

    const std::vector<DeletionRequest> requests = planRequests(plan, includeReview, permanent);
    if (requests.empty()) {
        std::cout << "Nothing to delete.\n";
        return 1;
    }
    const std::string question = "Delete " + std::to_string(requests.size()) + " item(s)" +
                                 (permanent ? " permanently?" : "?");
    if (!confirmed(question, yes)) {
        std::cout << "Nothing was deleted.\n";
        return 1;
    }
    return runRemoval(requests);
}

} // namespace dorvik::cli
