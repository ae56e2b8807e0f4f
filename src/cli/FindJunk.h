#pragma once

#include "cleaning/JunkFinding.h"

#include <vector>

namespace dorvik::cli {

// Every finding of the junk finder, with "Searching…" on standard error while it runs when that
// is a terminal.
std::vector<JunkFinding> findJunk();

} // namespace dorvik::cli
