#include "platform/FileSystem.h"

#include "platform/PinnedFolder.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik::platform {

bool pathExists(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

void removeFile(const std::string& path) {
    unlink(path.c_str());
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
    return directoryEntries(path).has_value();
}

namespace {

// The names in an open folder; the folder is closed.
std::optional<std::vector<std::string>> entriesOf(DIR* folder) {
    if (folder == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = readdir(folder)) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            names.emplace_back(entry->d_name);
        }
    }
    const bool complete = errno == 0;
    closedir(folder);
    if (!complete) {
        return std::nullopt;
    }
    return names;
}

} // namespace

std::optional<std::vector<std::string>> directoryEntries(const std::string& path) {
    return entriesOf(opendir(path.c_str()));
}

std::optional<std::vector<std::string>> directoryEntriesWithoutLinks(const std::string& path) {
    const PinnedFolder folder(path);
    if (!folder.isOpen()) {
        return std::nullopt;
    }
    const int listing = dup(folder.descriptor());
    if (listing < 0) {
        return std::nullopt;
    }
    DIR* stream = fdopendir(listing);
    if (stream == nullptr) {
        close(listing);
    }
    return entriesOf(stream);
}

std::optional<std::string> linkTarget(const std::string& path) {
    std::string target(4096, '\0');
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length < 0 || static_cast<size_t>(length) >= target.size()) {
        return std::nullopt;
    }
    target.resize(static_cast<size_t>(length));
    return target;
}

std::optional<double> modificationTime(const std::string& path) {
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) {
        return std::nullopt;
    }
    return static_cast<double>(st.st_mtim.tv_sec) + static_cast<double>(st.st_mtim.tv_nsec) / 1e9;
}

std::optional<double> accessTime(const std::string& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) {
        return std::nullopt;
    }
    return static_cast<double>(st.st_atim.tv_sec) + static_cast<double>(st.st_atim.tv_nsec) / 1e9;
}

std::optional<FileError> createFolders(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        return fileErrorFromNumber(error.value());
    }
    return std::nullopt;
}

int renameNoReplaceAt(int fromFolder, const std::string& from, int toFolder,
                      const std::string& to) {
    if (renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL) {
        return errno;
    }
    // A filesystem without the flag: check, then rename.
    struct stat st {};
    if (fstatat(toFolder, to.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0) {
        return EEXIST;
    }
    return renameat(fromFolder, from.c_str(), toFolder, to.c_str()) == 0 ? 0 : errno;
}

} // namespace dorvik::platform
