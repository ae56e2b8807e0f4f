#pragma once

// The order of the lists' rows. Each row's key is read once into one flat array and the array is
// sorted, rather than following every row's pointers at each comparison: with hundreds of
// thousands of rows that is what keeps a click on a column header immediate.

#include "scanning/FileNode.h"

#include <vector>

namespace dorvik {

enum class NodeColumn { name, size, files, kind, category, modified, lastOpened, risk };

// Sorts `nodes` by the column, rising or falling; rows that tie keep their order. Names compare
// letters without regard to case first, then as bytes. Risk does not sort: nothing moves.
void sortNodes(std::vector<FileNodePtr>& nodes, NodeColumn column, bool rising);

} // namespace dorvik
