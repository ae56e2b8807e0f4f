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
