#pragma once

// The systemd units the user turned on for their own session: the links in the "*.wants" folders
// of $XDG_CONFIG_HOME/systemd/user that `systemctl --user enable` makes. Each link is an item; what
// it runs is read from the unit it leads to.

#include "system/DesktopApplications.h"
#include "system/LaunchItem.h"

#include <vector>

namespace dorvik {

// Unsorted; unreadable folders are passed over, a unit that cannot be read leaves its program
// unknown.
std::vector<LaunchItem> listSystemdUserUnits(const LaunchPlaces& places,
                                             const DesktopApplications& applications);

} // namespace dorvik
