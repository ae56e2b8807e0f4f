#include "cleaning/ScheduledClean.h"

#include "catalogue/JunkCatalogue.h"
#include "cleaning/JunkFinder.h"

namespace dorvik::ScheduledClean {

bool mayCleanUnattended(const JunkRule& rule) {
    return rule.risk == Risk::safe && rule.inSmartClean && rule.removal == Removal::permanent &&
           !emptiesATrash(rule);
}

std::vector<JunkFinding> find() {
    std::vector<JunkFinding> findings;
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        if (!mayCleanUnattended(rule)) {
            continue;
        }
        if (JunkFinding finding = JunkFinder::evaluate(rule); !finding.items.empty()) {
            findings.push_back(std::move(finding));
        }
    }
    return findings;
}

std::vector<DeletionRequest> requests(const std::vector<JunkFinding>& findings) {
    std::vector<DeletionRequest> result;
    for (const JunkFinding& finding : findings) {
        if (!mayCleanUnattended(finding.rule)) {
            continue;
        }
        for (const JunkItem& item : finding.items) {
            result.push_back(makeDeletionRequest(item.url, item.size, Removal::permanent));
        }
    }
    return result;
}

} // namespace dorvik::ScheduledClean
