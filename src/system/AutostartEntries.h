#pragma once

// What a Linux desktop starts at login: the autostart entries of the user
// ($XDG_CONFIG_HOME/autostart) and of the system (/etc/xdg/autostart). A user entry stands in for
// a system entry of the same name; an entry is off when it says "Hidden=true" or
// "X-GNOME-Autostart-enabled=false", or when it is meant only for other desktops.

#include "system/DesktopApplications.h"
#include "system/LaunchItem.h"

#include <string>
#include <vector>

namespace dorvik {

// The entries of both folders, unsorted. Unreadable folders and entries are passed over.
std::vector<LaunchItem> listAutostartEntries(const LaunchPlaces& places,
                                             const DesktopApplications& applications);

// What turns a system entry off the way the desktop does it: a user entry of the same name that
// says "Hidden=true".
std::string hidingEntryText(const std::string& name);

} // namespace dorvik
