#include "platform/HomeDirectory.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace dorvik::platform {

std::string homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return home;
    }
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr) {
        return entry->pw_dir;
    }
    return "/";
}

} // namespace dorvik::platform
