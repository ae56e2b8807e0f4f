#include "platform/ApplicationSupport.h"

#include "platform/HomeDirectory.h"

#include <cstdlib>
#include <filesystem>

namespace dorvik::platform {

std::string applicationSupportDirectory() {
    std::string base;
    if (const char* dataHome = std::getenv("XDG_DATA_HOME");
        dataHome != nullptr && dataHome[0] == '/') {
        base = dataHome;
    } else {
        base = homeDirectory() + "/.local/share";
    }
    const std::string folder = base + "/Dorvik";
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return folder;
}

} // namespace dorvik::platform
