#include "catalogue/Risk.h"

namespace dorvik {

namespace {

constexpr std::array<RiskInfo, allRisks.size()> riskInfos = {{
    {"safe", "Safe", "checkmark.shield.fill"},
    {"review", "Review", "exclamationmark.triangle.fill"},
    {"protected", "Protected", "lock.fill"},
}};

} // namespace

const RiskInfo& info(Risk risk) {
    return riskInfos[static_cast<size_t>(risk)];
}

std::optional<Risk> riskFromRaw(int raw) {
    if (raw < 0 || raw >= static_cast<int>(allRisks.size())) {
        return std::nullopt;
    }
    return static_cast<Risk>(raw);
}

} // namespace dorvik
