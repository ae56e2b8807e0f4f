#include "platform/RemoveItem.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dorvik::platform {

namespace {

constexpr int openFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// A folder being emptied: its descriptor, the names it held when it was listed, and the first
// error met inside it.
struct OpenFolder {
    int fd = -1;
    std::string name; // within the folder above
    std::vector<std::string> names;
    size_t next = 0;
    int error = 0;
};

// The names in the folder, read through a duplicate so that `fd` stays usable. Zero or the error.
int listFolder(int fd, std::vector<std::string>& names) {
    const int listing = dup(fd);
    if (listing < 0) {
        return errno;
    }
    DIR* folder = fdopendir(listing);
    if (folder == nullptr) {
        const int error = errno;
        close(listing);
        return error;
    }
    errno = 0;
    while (const dirent* entry = readdir(folder)) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            names.emplace_back(entry->d_name);
        }
        errno = 0;
    }
    const int error = errno;
    closedir(folder);
    return error;
}

// Removes a folder that is already empty. An entry that has gone meanwhile is no failure inside
// a folder being removed.
int removeEmptyFolder(int parent, const std::string& name) {
    return unlinkat(parent, name.c_str(), AT_REMOVEDIR) == 0 ? 0 : errno;
}

// Starts on the entry `name` of `parent`: a file or a link is unlinked at once (result in
// `error`), a folder on `device` is opened and listed into `folder`. True when a folder is open.
bool openEntry(int parent, const std::string& name, dev_t device, OpenFolder& folder, int& error) {
    error = 0;
    const int fd = openat(parent, name.c_str(), openFolderFlags);
    if (fd < 0) {
        const int openError = errno;
        if (openError == ENOTDIR || openError == ELOOP) {
            // Not a folder, or a symbolic link: the name itself goes.
            error = unlinkat(parent, name.c_str(), 0) == 0 ? 0 : errno;
        } else if (openError == EACCES) {
            // An unreadable folder still goes if it is empty.
            error = removeEmptyFolder(parent, name) == 0 ? 0 : openError;
        } else {
            error = openError;
        }
        return false;
    }
    struct stat st {};
    if (fstat(fd, &st) != 0) {
        error = errno;
        close(fd);
        return false;
    }
    if (st.st_dev != device) {
        // Another filesystem is mounted here: it is not ours to empty, and the folder stays.
        error = EBUSY;
        close(fd);
        return false;
    }
    folder = OpenFolder{fd, name, {}, 0, 0};
    folder.error = listFolder(fd, folder.names);
    return true;
}

// Zero, or the first error met while removing `name` of `parent` with all it holds.
int removeTree(int parent, const std::string& name, dev_t device) {
    std::vector<OpenFolder> stack(1);
    int error = 0;
    if (!openEntry(parent, name, device, stack.back(), error)) {
        return error;
    }
    // Depth first, one open descriptor per level; a folder goes once it has been emptied.
    while (!stack.empty()) {
        OpenFolder& top = stack.back();
        if (top.next < top.names.size()) {
            const std::string child = top.names[top.next++];
            OpenFolder inner;
            int childError = 0;
            if (openEntry(top.fd, child, device, inner, childError)) {
                stack.push_back(std::move(inner));
            } else if (childError != 0 && childError != ENOENT && top.error == 0) {
                top.error = childError;
            }
            continue;
        }
        OpenFolder done = std::move(top);
        stack.pop_back();
        close(done.fd);
        const int above = stack.empty() ? parent : stack.back().fd;
        int doneError = done.error;
        if (doneError == 0) {
            doneError = removeEmptyFolder(above, done.name);
            if (doneError == ENOENT && !stack.empty()) {
                doneError = 0;
            }
        }
        if (stack.empty()) {
            return doneError;
        }
        if (doneError != 0 && stack.back().error == 0) {
            stack.back().error = doneError;
        }
    }
    return 0;
}

} // namespace

std::optional<FileError> removeItem(const std::string& path) {
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == '/') {
        trimmed.pop_back();
    }
    const size_t slash = trimmed.rfind('/');
    const std::string name = slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
    const std::string parentPath = slash == std::string::npos ? "."
                                   : slash == 0               ? "/"
                                                              : trimmed.substr(0, slash);
    if (name.empty() || name == "." || name == "..") {
        return fileErrorFromNumber(EINVAL);
    }
    const int parent = open(parentPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parent < 0) {
        return fileErrorFromNumber(errno);
    }
    struct stat st {};
    int error = fstat(parent, &st) == 0 ? removeTree(parent, name, st.st_dev) : errno;
    close(parent);
    if (error != 0) {
        return fileErrorFromNumber(error);
    }
    return std::nullopt;
}

} // namespace dorvik::platform
