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

// Where the user's applications keep their settings: $XDG_CONFIG_HOME when it is an absolute
// path, else ~/.config.
std::string configHomeDirectory();

// The folders where applications' shared data lies, desktop entries among it: the absolute
// paths of $XDG_DATA_DIRS, else /usr/local/share and /usr/share.
std::vector<std::string> dataDirectories();

// The user id of this process.
unsigned currentUserId();

// The home folders of the other people on this computer: the password database's entries for root
// and for ordinary users (ids from 1000, "nobody" left out) other than this process's user.
std::vector<std::string> otherUsersHomeDirectories();

} // namespace dorvik::platform
