#pragma once

#include "platform/HomeDirectory.h" // dataHomeDirectory

#include <string>

namespace dorvik::platform {

// Where Dorvik keeps its own files: $XDG_DATA_HOME/Dorvik, by default ~/.local/share/Dorvik.
// Created with its parents on first need; a failure to create it is ignored here and shows
// later as a failed write.
std::string applicationSupportDirectory();

// Makes the folder (mode 0700) and the folders above it as needed. The files of ours in it list
// what the user removed and scanned: a folder of this user's that others may read is closed to
// them. True when a folder stands there afterwards.
bool makePrivateFolder(const std::string& path);

} // namespace dorvik::platform
