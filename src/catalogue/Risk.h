#pragma once

// How dangerous it is to remove something. Ordered: safe < review < protected.

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace dorvik {

enum class Risk : uint8_t {
    safe = 0,
    review = 1,
    protected_ = 2, // "protected" is a C++ keyword; the case name stays "protected"
};

inline constexpr std::array<Risk, 3> allRisks = {Risk::safe, Risk::review, Risk::protected_};

struct RiskInfo {
    std::string_view caseName; // "safe", "review", "protected"
    std::string_view label;    // the word the user reads
    std::string_view symbol;   // the badge's symbol
};

const RiskInfo& info(Risk risk);

// None for a number outside 0 to 2.
std::optional<Risk> riskFromRaw(int raw);

} // namespace dorvik
