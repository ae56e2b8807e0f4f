#pragma once

// What the lists let the user do with scanned nodes: the context menu of a row, and the plan
// that deletes a selection.

#include "scanning/FileNode.h"

#include <functional>
#include <vector>

class QMenu;
class QWidget;

namespace dorvik {

class AppState;

// Asks the user to confirm moving the nodes to the Trash, each with the safety rules' verdict.
// Shows the paths in the file manager; when nothing answers, the toast says so.
void revealPaths(AppState& state, const std::vector<std::string>& paths);

void proposeNodeDeletion(AppState& state, const std::vector<FileNodePtr>& nodes);

// The menu for the nodes a right click concerns. `preview` is empty where the page has no
// preview; otherwise "Quick Look" shows for one node that is a file or a package.
QMenu* makeNodeContextMenu(AppState& state, const std::vector<FileNodePtr>& nodes,
                           const std::function<void(const FileNodePtr&)>& preview, QWidget* parent);

} // namespace dorvik
