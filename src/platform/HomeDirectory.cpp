#include "platform/HomeDirectory.h"

#include "base/PathNames.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace dorvik::platform {

// Paths are compared as text against the home folder, so "/home/me/" must read "/home/me".

std::string homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return withoutTrailingSlashes(home);
    }
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr) {
        return withoutTrailingSlashes(entry->pw_dir);
    }
    return "/";
}

std::string dataHomeDirectory() {
    if (const char* value = std::getenv("XDG_DATA_HOME"); value != nullptr && value[0] == '/') {
        return withoutTrailingSlashes(value);
    }
    return homeDirectory() + "/.local/share";
}

std::string configHomeDirectory() {
    if (const char* value = std::getenv("XDG_CONFIG_HOME"); value != nullptr && value[0] == '/') {
        return withoutTrailingSlashes(value);
    }
    return homeDirectory() + "/.config";
}

std::vector<std::string> otherUsersHomeDirectories() {
    constexpr uid_t firstOrdinaryUser = 1000;
    constexpr uid_t nobody = 65534;
    std::vector<std::string> homes;
    // The file itself, read with a stream of our own: getpwent's shared one is not thread-safe.
    FILE* database = std::fopen("/etc/passwd", "re");
    if (database == nullptr) {
        return homes;
    }
    const uid_t self = geteuid();
    passwd entry{};
    std::array<char, 4096> buffer{};
    passwd* read = nullptr;
    while (fgetpwent_r(database, &entry, buffer.data(), buffer.size(), &read) == 0) {
        const bool person =
            entry.pw_uid == 0 || (entry.pw_uid >= firstOrdinaryUser && entry.pw_uid != nobody);
        const std::string home =
            entry.pw_dir != nullptr ? withoutTrailingSlashes(entry.pw_dir) : "";
        if (person && entry.pw_uid != self && home.size() > 1 && home[0] == '/') {
            homes.push_back(home);
        }
    }
    std::fclose(database);
    return homes;
}

} // namespace dorvik::platform
