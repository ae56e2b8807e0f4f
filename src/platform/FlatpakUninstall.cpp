#include "platform/FlatpakUninstall.h"

#include "platform/Privileged.h"

namespace dorvik::platform {

namespace {

constexpr std::string_view notUninstalled = "Flatpak could not uninstall the app.";

} // namespace

std::optional<std::string> uninstallFlatpakApp(const FlatpakAppFolder& app,
                                               const ProcessRunner& run) {
    // The identifier goes into a command line; only a well-formed one ever does.
    if (!isFlatpakIdentifier(app.id)) {
        return std::string(notUninstalled);
    }
    if (app.installation == FlatpakInstallation::system) {
        return runPrivileged(std::string(flatpakPath) + " uninstall --system --noninteractive -y " +
                                 app.id,
                             notUninstalled, run);
    }
    const ToolRun done =
        run({std::string(flatpakPath), "uninstall", "--user", "--noninteractive", "-y", app.id});
    if (!done.launched) {
        return "Flatpak is not installed.";
    }
    if (done.exitStatus == 0) {
        return std::nullopt;
    }
    return toolMessage(done, notUninstalled);
}

} // namespace dorvik::platform
