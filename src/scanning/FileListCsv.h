#pragma once

// A list of scanned files as CSV, for a spreadsheet: one row a file in the list's order, every
// field quoted, paths in canonical form.

#include "scanning/FileNode.h"

#include <string>
#include <vector>

namespace dorvik {

inline constexpr std::string_view fileListCsvHeader =
    "Path,Name,Bytes on disk,Bytes,Kind,Category,Modified\n";

std::string fileListCsv(const std::vector<FileNodePtr>& nodes);

// Writes the CSV whole, or leaves `path` as it was; false when the file could not be written.
bool writeFileListCsv(const std::string& path, const std::vector<FileNodePtr>& nodes);

} // namespace dorvik
