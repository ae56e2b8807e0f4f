// dorvik-cli clean: what Quick Clean's "Clean" does. The items the junk finder lists for the
// selected rules (by default the rules Quick Clean ticks at first) go the way their rule says,
// without a plan; the engine still refuses whatever is protected.

#include "base/TextForms.h"
#include "base/Wording.h"
#include "catalogue/JunkCatalogue.h"
#include "cleaning/QuickClean.h"
#include "cli/Commands.h"
#include "cli/FindJunk.h"
#include "cli/RemovalRun.h"

#include <algorithm>
#include <iostream>

namespace dorvik::cli {

namespace {

bool isCatalogueRule(const std::string& id) {
    return std::ranges::any_of(JunkCatalogue::rules(),
                               [&id](const JunkRule& rule) { return rule.id == id; });
}

// Every rule's id, for the message that refuses an unknown one.
std::string ruleIds() {
    std::string ids;
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        ids += (ids.empty() ? "" : ", ") + rule.id;
    }
    return ids;
}

// The selected findings with what each holds and how it goes; the sum to clean.
int64_t printSelection(const std::vector<JunkFinding>& findings,
                       const std::set<std::string>& selection) {
    int64_t total = 0;
    for (const JunkFinding& finding : findings) {
        if (!selection.contains(finding.rule.id)) {
            continue;
        }
        const int64_t bytes = totalSize(finding);
        total += bytes;
        std::cout << Wording::shown(finding.rule.title) << ": " << TextForms::size(bytes) << ", "
                  << TextForms::counted(static_cast<int64_t>(finding.items.size()), "item", "items")
                  << " (" << outcomeLabel(finding.rule.removal) << ")\n";
    }
    return total;
}

} // namespace

int runClean(Arguments& arguments) {
    std::set<std::string> named;
    bool dryRun = false;
    bool yes = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--rule") {
            const std::string id = arguments.value(word);
            if (!isCatalogueRule(id)) {
                throw UsageError("no junk rule has the id \"" + id + "\" (one of " + ruleIds() +
                                 ")");
            }
            named.insert(id);
        } else if (word == "--dry-run") {
            dryRun = true;
        } else if (word == "--yes") {
            yes = true;
        } else {
            throw UsageError("unknown word " + word);
        }
    }
    const std::set<std::string> selection = named.empty() ? QuickClean::defaultSelection() : named;
    const std::vector<JunkFinding> findings = findJunk();
    const std::vector<DeletionRequest> requests = QuickClean::requests(findings, selection);
    if (requests.empty()) {
        std::cout << "Nothing to clean.\n";
        return 0;
    }
    const int64_t total = printSelection(findings, selection);
    std::cout << TextForms::size(total) << " ready to clean\n";
    if (dryRun) {
        return 0;
    }
    if (!confirmed("Clean " + TextForms::size(total) + "?", yes)) {
        std::cout << "Nothing was deleted.\n";
        return 1;
    }
    return runRemoval(requests);
}

} // namespace dorvik::cli
