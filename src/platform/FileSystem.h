#pragma once

// Small questions about paths that the core asks of the file system.

#include <string>

namespace dorvik::platform {

// True if something is at the path (a dangling symbolic link counts).
bool pathExists(const std::string& path);

// True if the path is a directory, following symbolic links.
bool isDirectory(const std::string& path);

// True if the file opens for reading (the file is closed again at once).
bool canOpenForReading(const std::string& path);

// True if the folder's entries can be read to the end.
bool canListFolder(const std::string& path);

} // namespace dorvik::platform
