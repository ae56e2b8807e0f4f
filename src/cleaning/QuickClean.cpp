#include "cleaning/QuickClean.h"

#include "catalogue/JunkCatalogue.h"

namespace dorvik::QuickClean {

std::set<std::string> defaultSelection() {
    std::set<std::string> selection;
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        if (rule.inSmartClean) {
            selection.insert(rule.id);
        }
    }
    return selection;
}

std::vector<DeletionRequest> requests(const std::vector<JunkFinding>& findings,
                                      const std::set<std::string>& selection) {
    std::vector<DeletionRequest> result;
    for (const JunkFinding& finding : findings) {
        if (!selection.contains(finding.rule.id)) {
            continue;
        }
        for (const JunkItem& item : finding.items) {
            result.push_back(makeDeletionRequest(item.url, item.size, finding.rule.removal));
        }
    }
    return result;
}

} // namespace dorvik::QuickClean
