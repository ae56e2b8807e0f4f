#pragma once

// Where the space of a scan goes, as text for people and as JSON for scripts. The `scan` and
// `load` commands print the same report.

#include "scanning/ScanResult.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace dorvik::cli {

// Every folder below the root (the root left out), in the order the walk met them.
std::vector<FileNodePtr> foldersInWalkOrder(const ScanResult& scan);

// The largest folders below the root (the root left out), largest first.
std::vector<FileNodePtr> largestFolders(const ScanResult& scan, size_t count);

// The largest files with a node, largest first.
std::vector<FileNodePtr> largestFiles(const ScanResult& scan, size_t count);

// The folders that could not be read, in the order the walk met them.
std::vector<std::string> unreadablePaths(const ScanResult& scan);

std::string scanReportText(const ScanResult& scan, size_t top);

nlohmann::json scanReportJson(const ScanResult& scan, size_t top);

// The report on standard output, as text or as JSON.
void printScanReport(const ScanResult& scan, size_t top, bool json);

} // namespace dorvik::cli
