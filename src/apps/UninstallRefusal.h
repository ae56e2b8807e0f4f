#pragma once

// Why an application may not be uninstalled at this moment. The page, its context menu, the
// state and dorvik-cli all ask here, before any plan is made; the safety rules stand behind
// them at removal time.

#include "apps/InstalledApp.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

enum class UninstallRefusal {
    apple,   // Apple's own applications stay, running or not
    running, // it must be quit first
};

// The first refusal that holds for `app`, Apple before running; none when it may go.
std::optional<UninstallRefusal>
uninstallRefusal(const InstalledApp& app, const std::vector<std::string>& runningIdentifiers);

// What the user is told: "Apple app: Dorvik doesn’t uninstall it." or "Quit the app to
// uninstall it."
std::string_view refusalNote(UninstallRefusal refusal);

} // namespace dorvik
