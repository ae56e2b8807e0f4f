#pragma once

// Where a command's scan comes from: a walk of a folder shown live on a terminal, or an archive
// written earlier with `scan --save`.

#include "scanning/ScanResult.h"

#include <set>
#include <string>

namespace dorvik::cli {

// Walks `root` (an absolute path), with one line of progress on standard error when it is a
// terminal. An input error for a root that is missing or no folder; none when the walk failed.
std::optional<ScanResult> scanOnTerminal(const std::string& root,
                                         const std::set<std::string>& excluded);

// The scan kept in an archive; an input error when there is none to read.
ScanResult loadArchivedScan(const std::string& path);

} // namespace dorvik::cli
