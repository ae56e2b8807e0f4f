#pragma once

// What the desktop does with a file for us: show it in the file manager, open it with its
// application, put its path on the clipboard.

#include <string>
#include <vector>

namespace dorvik::Desktop {

// Shows the items selected in the file manager (org.freedesktop.FileManager1 over the session
// bus); without one, opens the folder of the first item. False when neither answered.
bool reveal(const std::vector<std::string>& paths);

// Opens the item with the application the desktop chooses for it.
void open(const std::string& path);

// Puts the paths on the clipboard, one a line.
void copyPaths(const std::vector<std::string>& paths);

} // namespace dorvik::Desktop
