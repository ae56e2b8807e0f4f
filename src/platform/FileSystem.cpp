#include "platform/FileSystem.h"

#include <sys/stat.h>

namespace dorvik::platform {

bool pathExists(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

bool isDirectory(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

} // namespace dorvik::platform
