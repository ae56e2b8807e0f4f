#pragma once

#include <string>

namespace dorvik::platform {

// Where Dorvik keeps its own files: $XDG_DATA_HOME/Dorvik, by default ~/.local/share/Dorvik.
// Created with its parents on first need; a failure to create it is ignored here and shows
// later as a failed write.
std::string applicationSupportDirectory();

} // namespace dorvik::platform
