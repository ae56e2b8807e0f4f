#pragma once

// Saves what a list holds as CSV, to a file the user picks.

#include "scanning/FileNode.h"

#include <QString>

#include <vector>

class QWidget;

namespace dorvik {

// Asks where to save, suggesting `baseName` + ".csv", and writes the nodes in the order given. A
// cancelled dialog writes nothing; neither does a target that cannot be written, silently.
void exportCSV(QWidget* parent, const std::vector<FileNodePtr>& nodes, const QString& baseName);

} // namespace dorvik
