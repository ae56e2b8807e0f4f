#include "cleaning/JunkFinding.h"

namespace dorvik {

int64_t totalSize(const JunkFinding& finding) {
    int64_t total = 0;
    for (const JunkItem& item : finding.items) {
        total += item.size;
    }
    return total;
}

} // namespace dorvik
