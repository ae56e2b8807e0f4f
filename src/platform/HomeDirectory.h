#pragma once

#include <string>
#include <vector>

namespace dorvik::platform {

// The user's home folder: $HOME when it is set and not empty, else the password database;
// without a trailing slash.
std::string homeDirectory();

// Where the user's applications keep their data: $XDG_DATA_HOME when it is an absolute path, else
// ~/.local/share.
std::string dataHomeDirectory();

// Where the user's settings live: $XDG_CONFIG_HOME when it is an absolute path, else ~/.config.
std::string configHomeDirectory();

// The home folders of the other people on this computer: the password database's entries for root
// and for ordinary users (ids from 1000, "nobody" left out) other than this process's user.
std::vector<std::string> otherUsersHomeDirectories();

} // namespace dorvik::platform
