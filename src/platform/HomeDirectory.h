#pragma once

#include <string>

namespace dorvik::platform {

// The user's home folder: $HOME when it is set and not empty, else the password database;
// without a trailing slash.
std::string homeDirectory();

} // namespace dorvik::platform
