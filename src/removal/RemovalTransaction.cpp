#include "removal/RemovalTransaction.h"

#include "removal/DeletionHistory.h"
#include "removal/HistoryJournal.h"

namespace dorvik {

DeletionOutcome carryOutRemoval(const std::vector<DeletionRequest>& requests,
                                const std::string& historyFile) {
    HistoryJournal journal(historyFile);
    DeletionOutcome outcome = DeletionEngine::run(requests, &journal);
    DeletionHistory history(historyFile);
    history.record(outcome.entries, &journal);
    return outcome;
}

} // namespace dorvik
