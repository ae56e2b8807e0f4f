#include "apps/UninstallRefusal.h"

namespace dorvik {

std::optional<UninstallRefusal>
uninstallRefusal(const InstalledApp& app, const std::vector<std::string>& runningIdentifiers) {
    if (app.isApple) {
        return UninstallRefusal::apple;
    }
    if (isRunning(app, runningIdentifiers)) {
        return UninstallRefusal::running;
    }
    return std::nullopt;
}

std::string_view refusalNote(UninstallRefusal refusal) {
    switch (refusal) {
    case UninstallRefusal::apple:
        return "Apple app: Dorvik doesn\u2019t uninstall it.";
    case UninstallRefusal::running:
        return "Quit the app to uninstall it.";
    }
    return {};
}

} // namespace dorvik
