#pragma once

// Turns the junk catalogue into what lies on this disk right now. It looks at the file system
// afresh rather than at a scan, so that it works with or without one, and it lists the children
// of each rule's folder, never the folder itself, which must stay.

#include "cleaning/JunkFinding.h"

#include <vector>

namespace dorvik::JunkFinder {

// The children of the rule's folder that count, largest first. `now` is seconds since 1970; a
// rule with an age limit lists only children modified at or before `now` less that many days.
// A folder that cannot be listed finds nothing.
JunkFinding evaluate(const JunkRule& rule, double now);
JunkFinding evaluate(const JunkRule& rule);

// Every rule of the catalogue at once, one task each. Findings without items are left out; the
// rest come largest total first, equal totals in catalogue order.
std::vector<JunkFinding> findAll();

} // namespace dorvik::JunkFinder
