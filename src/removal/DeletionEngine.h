#pragma once

// Where every deletion of user data ends. The engine works through a list of requests one at a
// time, asks the safety rules once more about each and refuses what is protected at that moment,
// whatever the caller says, then moves the rest to the Trash or deletes it for good. It decides
// nothing else: what the user meant was settled in the plan. It holds no state between runs and
// never measures anything: the sizes come from the requests.

#include "platform/FileError.h"
#include "platform/RunTool.h"
#include "removal/DeletionRequest.h"
#include "removal/HistoryEntry.h"

#include <string>
#include <vector>

namespace dorvik {

struct DeletionOutcome {
    DeletionReport report;
    std::vector<HistoryEntry> entries; // for the items that went, in request order
};

class HistoryJournal;

namespace DeletionEngine {

// Every request in list order, strictly one after the other. It has no failure of its own: each
// refusal lands in the report and the batch goes on. Each item is noted in `journal`, when one
// is given, as it goes (see HistoryJournal). A Flatpak app's folder goes only by an uninstall,
// which `runTool` carries out with Flatpak (tests record it instead), and an uninstall takes
// nothing else. Blocks; run it on a worker.
DeletionOutcome run(const std::vector<DeletionRequest>& requests, HistoryJournal* journal = nullptr,
                    const platform::ProcessRunner& runTool = platform::runProcess);

// The sentence the user reads for a refusal of the file system.
std::string failureReason(const platform::FileError& error);

} // namespace DeletionEngine

} // namespace dorvik
