#include "cleaning/JunkFinding.h"

#include <algorithm>

namespace dorvik {

int64_t totalSize(const JunkFinding& finding) {
    int64_t total = 0;
    for (const JunkItem& item : finding.items) {
        total += item.size;
    }
    return total;
}

std::vector<JunkFinding> sortedByGroup(std::vector<JunkFinding> findings) {
    std::ranges::stable_sort(findings, [](const JunkFinding& a, const JunkFinding& b) {
        return a.rule.group < b.rule.group;
    });
    return findings;
}

} // namespace dorvik
