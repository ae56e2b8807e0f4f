#pragma once

// The Flatpak applications of the user's and the system's installation, read from the files
// Flatpak deploys (never from its command's output), and the data each keeps in ~/.var/app.

#include "apps/InstalledApp.h"
#include "platform/FlatpakPlaces.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::Flatpak {

using Installation = platform::FlatpakInstallation;

struct FlatpakApp {
    std::string id; // reverse-DNS, as in org.mozilla.firefox
    Installation installation = Installation::user;
    std::string folder;   // <installation>/app/<id>: every branch and deployment of the app
    std::string deployed; // what current/active leads to: the files in use
    std::string name;     // the desktop entry's Name, else the identifier
    std::optional<std::string> version; // the newest release of its metainfo
    std::optional<std::string> icon;    // an icon file it exports

    bool operator==(const FlatpakApp&) const = default;
};

// The app in `folder` (<installation>/app/<id>), when its current/active deployment holds a
// metadata file naming `id` as an application.
std::optional<FlatpakApp> readApp(const std::string& folder, const std::string& id,
                                  Installation installation);

// Every app of both installations, the user's first, each in listing order.
std::vector<FlatpakApp> installedApps();

// ~/.var/app/<id>: where the sandbox keeps the app's data.
std::string dataFolder(std::string_view id);

// The Linux places outside the sandbox where an app's data may stand too, relative to the home
// folder, with the label of each (the nearest of the Library's).
struct DataLocation {
    std::string_view relativePath;
    std::string_view label;
};
inline constexpr DataLocation dataLocations[] = {
    {".local/share", "Application Support"},
    {".cache", "Caches"},
    {".config", "Preferences"},
};

// The app as the application list shows it: its deployment measured, its ~/.var/app folder's
// parts and what the matching rule finds for it in the places above, each measured, largest first;
// last used when its data last changed.
InstalledApp inspect(const FlatpakApp& app);

} // namespace dorvik::Flatpak
