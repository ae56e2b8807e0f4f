#pragma once

// Uninstalling a Flatpak app with Flatpak itself, never by deleting its folder: Flatpak keeps
// its own records of what is installed and must make the change.

#include "platform/FlatpakPlaces.h"
#include "platform/RunTool.h"

#include <optional>
#include <string>
#include <string_view>

namespace dorvik::platform {

inline constexpr std::string_view flatpakPath = "/usr/bin/flatpak";

// Runs `flatpak uninstall` for the app in its installation: the user's directly, the system's
// through the privileged runner. None on success; otherwise the text to show.
std::optional<std::string> uninstallFlatpakApp(const FlatpakAppFolder& app,
                                               const ProcessRunner& run = runProcess);

} // namespace dorvik::platform
