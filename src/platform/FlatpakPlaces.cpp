#include "platform/FlatpakPlaces.h"

#include "platform/HomeDirectory.h"
#include "platform/SystemRoot.h"

namespace dorvik::platform {

std::string flatpakAppsFolder(FlatpakInstallation installation) {
    if (installation == FlatpakInstallation::user) {
        return dataHomeDirectory() + "/flatpak/app";
    }
    return systemPath("/var/lib/flatpak/app");
}

bool isFlatpakIdentifier(std::string_view id) {
    int parts = 0;
    bool partStarted = false;
    for (const char ch : id) {
        if (ch == '.') {
            if (!partStarted) {
                return false;
            }
            partStarted = false;
            continue;
        }
        const bool allowed = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') ||
                             (ch >= '0' && ch <= '9') || ch == '_' || ch == '-';
        if (!allowed) {
            return false;
        }
        if (!partStarted) {
            partStarted = true;
            ++parts;
        }
    }
    return partStarted && parts >= 3;
}

std::optional<FlatpakAppFolder> flatpakAppOfFolder(std::string_view path) {
    for (const FlatpakInstallation installation :
         {FlatpakInstallation::user, FlatpakInstallation::system}) {
        const std::string folder = flatpakAppsFolder(installation) + "/";
        if (!path.starts_with(folder)) {
            continue;
        }
        const std::string_view id = path.substr(folder.size());
        if (isFlatpakIdentifier(id)) {
            return FlatpakAppFolder{std::string(id), installation};
        }
    }
    return std::nullopt;
}

} // namespace dorvik::platform
