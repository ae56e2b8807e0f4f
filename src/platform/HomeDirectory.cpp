#include "platform/HomeDirectory.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace dorvik::platform {

namespace {

// Paths are compared as text against the home folder, so "/home/me/" must read "/home/me".
std::string withoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

} // namespace

std::string homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return withoutTrailingSlashes(home);
    }
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr) {
        return withoutTrailingSlashes(entry->pw_dir);
    }
    return "/";
}

} // namespace dorvik::platform
