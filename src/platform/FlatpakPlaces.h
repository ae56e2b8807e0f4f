#pragma once

// Where Flatpak keeps its applications: one folder an app, <installation>/app/<id>, in the user's
// installation and in the system's.

#include <optional>
#include <string>
#include <string_view>

namespace dorvik::platform {

enum class FlatpakInstallation { user, system };

// <installation>/app: $XDG_DATA_HOME/flatpak/app for the user, /var/lib/flatpak/app for the
// system (below DORVIK_SYSTEM_ROOT when tests set it).
std::string flatpakAppsFolder(FlatpakInstallation installation);

struct FlatpakAppFolder {
    std::string id;
    FlatpakInstallation installation = FlatpakInstallation::user;

    bool operator==(const FlatpakAppFolder&) const = default;
};

// The app whose folder `path` is: exactly <installation>/app/<id>, with an identifier of three
// parts or more made of letters, digits, "_" and "-". None for anything else, inside or above.
std::optional<FlatpakAppFolder> flatpakAppOfFolder(std::string_view path);

// True for a Flatpak application identifier as above; such an identifier needs no quoting.
bool isFlatpakIdentifier(std::string_view id);

} // namespace dorvik::platform
