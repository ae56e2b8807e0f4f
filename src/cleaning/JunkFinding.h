#pragma once

// What one junk rule finds on this disk now: the direct children of its folder that count.

#include "catalogue/JunkRule.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace dorvik {

struct JunkItem {
    std::string id;  // the item's path
    std::string url; // the item; a plain path on this platform
    std::string ruleID;
    int64_t size = 0; // allocated bytes, hard links once
    int64_t fileCount = 0;
    std::optional<double> modified; // content modification, seconds since 1970

    bool operator==(const JunkItem&) const = default;
};

struct JunkFinding {
    JunkRule rule;
    std::vector<JunkItem> items; // largest first

    bool operator==(const JunkFinding&) const = default;
};

// The bytes of all the finding's items.
int64_t totalSize(const JunkFinding& finding);

// The findings in the order of their rules' groups; within a group, in the order given.
std::vector<JunkFinding> sortedByGroup(std::vector<JunkFinding> findings);

// How many items of one rule a listing shows before it says how many more there are.
inline constexpr size_t shownItemsPerRule = 300;

} // namespace dorvik
