#include "platform/ApplicationSupport.h"

#include "platform/HomeDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik::platform {

std::string applicationSupportDirectory() {
    const std::string folder = dataHomeDirectory() + "/Dorvik";
    makePrivateFolder(folder);
    return folder;
}

bool makePrivateFolder(const std::string& path) {
    std::error_code ignored;
    const std::filesystem::path parent = std::filesystem::path(path).parent_path();
    if (!parent.empty()) {
        std::filesystem::create_directories(parent, ignored);
    }
    if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        return false;
    }
    struct stat st {};
    if (stat(path.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) {
        return false;
    }
    if (st.st_uid == geteuid() && (st.st_mode & 0077) != 0) {
        chmod(path.c_str(), st.st_mode & 0700);
    }
    return true;
}

} // namespace dorvik::platform
