#include "cli/RemovalRun.h"

#include "base/PathNames.h"
#include "base/Wording.h"
#include "cli/Arguments.h"
#include "cli/TerminalText.h"
#include "platform/Terminal.h"
#include "removal/DeletionHistory.h"
#include "removal/RemovalTransaction.h"
#include "removal/Toast.h"

#include <iostream>

namespace dorvik::cli {

namespace {

void printRefusals(const std::vector<DeletionFailure>& refusals) {
    for (const DeletionFailure& refusal : refusals) {
        std::cout << "  " << shownPath(refusal.path) << ": " << Wording::shown(refusal.reason)
                  << "\n";
    }
}

} // namespace

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
