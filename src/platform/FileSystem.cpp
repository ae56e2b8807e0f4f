#include "platform/FileSystem.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik::platform {

bool pathExists(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

bool isDirectory(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool canOpenForReading(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    close(fd);
    return true;
}

bool canListFolder(const std::string& path) {
    DIR* folder = opendir(path.c_str());
    if (folder == nullptr) {
        return false;
    }
    errno = 0;
    while (readdir(folder) != nullptr) {
    }
    const bool complete = errno == 0;
    closedir(folder);
    return complete;
}

} // namespace dorvik::platform
