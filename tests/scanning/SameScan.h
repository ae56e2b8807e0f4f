#pragma once

// Node-by-node comparison of two scans: names, flags, numbers and the order of children and of
// the file list.

#include "scanning/ScanResult.h"

namespace dorvik::test {

void expectSameTree(const FileNode& a, const FileNode& b);

// The timings too: give both the same when they come from two walks.
void expectSameScan(const ScanResult& a, const ScanResult& b);

} // namespace dorvik::test
