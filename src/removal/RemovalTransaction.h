#pragma once

// One removal from its first item to its record: the road every removal takes, whoever asks for
// it (the application, dorvik-cli, the scheduled clean). The engine works through the requests,
// each item noted in a journal beside the history file the moment it goes, and then the batch
// is recorded in the history under the file's lock, the journal folded in and gone. A process
// killed midway leaves its journal, and the next reader of the history takes it in: nothing
// that went is missing from the history.

#include "removal/DeletionEngine.h"
#include "removal/DeletionRequest.h"

#include <string>
#include <vector>

namespace dorvik {

// Blocks; run it on a worker. What went and what was refused is in the outcome, and the history
// file holds the entries of what went.
DeletionOutcome carryOutRemoval(const std::vector<DeletionRequest>& requests,
                                const std::string& historyFile);

} // namespace dorvik
