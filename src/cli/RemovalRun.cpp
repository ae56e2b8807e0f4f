#include "cli/RemovalRun.h"

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Arguments.h"
#include "cli/TerminalText.h"
#include "platform/Terminal.h"
#include "removal/DeletionHistory.h"
#include "removal/PlanTexts.h"
#include "removal/RemovalTransaction.h"
#include "removal/Toast.h"

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

void printRefusals(const std::vector<DeletionFailure>& refusals) {
    for (const DeletionFailure& refusal : refusals) {
        std::cout << "  " << shownPath(refusal.path) << ": " << Wording::shown(refusal.reason)
                  << "\n";
    }
}

} // namespace

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

bool confirmed(const std::string& question, bool yes) {
    if (yes) {
        return true;
    }
    if (!platform::standardInputIsTerminal()) {
        throw InputError("there is no terminal to ask on; add --yes to go ahead without asking");
    }
    std::cout << question << " [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes" || answer == "YES" || answer == "Yes";
}

int runRemoval(const std::vector<DeletionRequest>& requests) {
    const DeletionOutcome outcome = carryOutRemoval(requests, DeletionHistory::defaultPath());

    const DeletionReport& report = outcome.report;
    const Toast toast = deletionToast(report, outcome.entries, FailureDetails::listedBelow);
    std::cout << toast.message << "\n";
    if (toast.detail) {
        std::cout << *toast.detail << "\n";
        printRefusals(report.failures);
        printRefusals(report.skippedProtected);
    }
    if (!toast.undoable.empty()) {
        std::cout << "Undo with: dorvik-cli undo";
        for (const HistoryEntry& entry : toast.undoable) {
            std::cout << " " << entry.id;
        }
        std::cout << "\n";
    }
    return report.failures.empty() && report.skippedProtected.empty() ? 0 : 1;
}

} // namespace dorvik::cli
