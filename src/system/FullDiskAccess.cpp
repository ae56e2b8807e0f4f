#include "system/FullDiskAccess.h"

#include "platform/FileSystem.h"

namespace dorvik {

bool hasFullDiskAccess() {
    return true;
}

std::vector<std::string> fullDiskAccessCanaries(const std::string& homeDirectory) {
    return {"/Library/Application Support/com.apple.TCC/TCC.db", homeDirectory + "/Library/Safari"};
}

bool probeFullDiskAccess(const std::vector<std::string>& canaries) {
    for (const std::string& canary : canaries) {
        if (!platform::pathExists(canary)) {
            continue;
        }
        if (canary.ends_with(".db")) {
            if (platform::canOpenForReading(canary)) {
                return true;
            }
        } else if (platform::canListFolder(canary)) {
            return true;
        }
    }
    return false;
}

} // namespace dorvik
