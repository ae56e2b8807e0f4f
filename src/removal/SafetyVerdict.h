#pragma once

#include "catalogue/Risk.h"

#include <string>

namespace dorvik {

// What the safety rules say of one path: how dangerous its removal is, and why, in one sentence
// for the user.
struct SafetyVerdict {
    Risk risk = Risk::review;
    std::string reason;

    bool operator==(const SafetyVerdict&) const = default;
};

} // namespace dorvik
