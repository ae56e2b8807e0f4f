#include "platform/RemoveItem.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace dorvik::platform {

namespace {

constexpr int openFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// Descriptors kept open at most: the folders nearest the one being emptied.
constexpr size_t openLevels = 32;

// Errors of the walk's own beside the system's error numbers.
constexpr int mountedHere = -1;    // another mount stands at the entry
constexpr int movedMeanwhile = -2; // a folder reopened by name is no longer the one left

FileError errorFor(int error) {
    switch (error) {
    case mountedHere:
        return mountPointError();
    case movedMeanwhile:
        return FileError{FileErrorKind::other,
                         "A folder inside it was moved while it was being removed."};
    default:
        return fileErrorFromNumber(error);
    }
}

// A folder being emptied: its descriptor (closed while far above the walk), its name within the
// folder above, what it is, the names it held when it was listed, and the first error inside it.
struct Level {
    int fd = -1;
    std::string name;
    FileIdentity identity;
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

class TreeRemoval {
public:
    explicit TreeRemoval(const PinnedFolder& base) : base_(base) {}
    ~TreeRemoval() {
        for (const Level& level : stack_) {
            if (level.fd >= 0) {
                close(level.fd);
            }
        }
    }
    TreeRemoval(const TreeRemoval&) = delete;
    TreeRemoval& operator=(const TreeRemoval&) = delete;

    // Zero, or the first error met while removing `name` with all it holds.
    int remove(const std::string& name) {
        const auto item = identityAt(base_.descriptor(), name);
        if (!item) {
            return errno;
        }
        if (item->mount != base_.identity().mount) {
            return mountedHere; // the item itself: refused before anything is touched
        }
        int error = 0;
        if (!enter(base_.descriptor(), name, error)) {
            return error;
        }
        // Depth first; a folder goes once it has been emptied.
        while (!stack_.empty()) {
            if (const int reopenError = reopenTop(); reopenError != 0) {
                return reopenError;
            }
            Level& top = stack_.back();
            if (top.next < top.names.size()) {
                const std::string child = top.names[top.next++];
                int childError = 0;
                if (!enter(top.fd, child, childError) && childError != 0 && childError != ENOENT &&
                    stack_.back().error == 0) {
                    stack_.back().error = childError;
                }
                continue;
            }
            if (const int doneError = leave(); doneError != 0 || stack_.empty()) {
                return doneError;
            }
        }
        return 0;
    }

    bool removedSomething() const { return removedSomething_; }

private:
    int unlinkEntry(int folder, const std::string& name, int flags) {
        if (unlinkat(folder, name.c_str(), flags) != 0) {
            return errno;
        }
        removedSomething_ = true;
        return 0;
    }

    // Starts on the entry `name` of `folder`: a file or a link is unlinked at once (result in
    // `error`), a folder of this mount is opened, listed and pushed. True when one was pushed.
    bool enter(int folder, const std::string& name, int& error) {
        error = 0;
        const int fd = openat(folder, name.c_str(), openFolderFlags);
        if (fd < 0) {
            const int openError = errno;
            if (openError == ENOTDIR || openError == ELOOP) {
                // Not a folder, or a symbolic link: the name itself goes. A file mounted over
                // another answers EBUSY: say what it is.
                error = unlinkEntry(folder, name, 0);
                if (error == EBUSY) {
                    const auto identity = identityAt(folder, name);
                    const auto own = identityAt(folder, "");
                    if (identity && own && identity->mount != own->mount) {
                        error = mountedHere;
                    }
                }
            } else if (openError == EACCES) {
                // An unreadable folder still goes if it is empty.
                error = unlinkEntry(folder, name, AT_REMOVEDIR) == 0 ? 0 : openError;
            } else {
                error = openError;
            }
            return false;
        }
        const auto identity = identityAt(fd, "");
        if (!identity) {
            error = errno;
            close(fd);
            return false;
        }
        if (identity->mount != base_.identity().mount) {
            // Another mount stands here, whatever its device: not ours to empty; it stays.
            error = mountedHere;
            close(fd);
            return false;
        }
        stack_.push_back(Level{fd, name, *identity, {}, 0, 0});
        stack_.back().error = listFolder(fd, stack_.back().names);
        if (stack_.size() > openLevels) {
            Level& far = stack_[stack_.size() - openLevels - 1];
            close(far.fd);
            far.fd = -1;
        }
        return true;
    }

    // The top folder emptied: closes and removes it, and hands its error to the folder above.
    // The error of the item itself once the stack is empty.
    int leave() {
        Level done = std::move(stack_.back());
        stack_.pop_back();
        close(done.fd);
        if (const int reopenError = reopenTop(); reopenError != 0) {
            return reopenError;
        }
        const int folder = stack_.empty() ? base_.descriptor() : stack_.back().fd;
        int error = done.error;
        if (error == 0) {
            error = unlinkEntry(folder, done.name, AT_REMOVEDIR);
            if (error == ENOENT && !stack_.empty()) {
                error = 0; // gone meanwhile: no failure inside a folder being removed
            }
        }
        if (stack_.empty()) {
            return error;
        }
        if (error != 0 && stack_.back().error == 0) {
            stack_.back().error = error;
        }
        return 0;
    }

    // Opens the top folder again if it was closed on the way down, name by name from the nearest
    // open folder above, each of which must still be the folder it was. Zero or the error.
    int reopenTop() {
        if (stack_.empty() || stack_.back().fd >= 0) {
            return 0;
        }
        const size_t top = stack_.size() - 1;
        size_t first = top;
        while (first > 0 && stack_[first - 1].fd < 0) {
            --first;
        }
        int folder = first == 0 ? base_.descriptor() : stack_[first - 1].fd;
        for (size_t level = first; level <= top; ++level) {
            const int fd = openat(folder, stack_[level].name.c_str(), openFolderFlags);
            if (fd < 0) {
                return errno == ENOENT || errno == ELOOP || errno == ENOTDIR ? movedMeanwhile
                                                                             : errno;
            }
            stack_[level].fd = fd;
            const auto identity = identityAt(fd, "");
            if (!identity || *identity != stack_[level].identity) {
                return movedMeanwhile;
            }
            // Only the nearest levels stay open.
            if (level > first && top - (level - 1) >= openLevels) {
                close(stack_[level - 1].fd);
                stack_[level - 1].fd = -1;
            }
            folder = fd;
        }
        return 0;
    }

    const PinnedFolder& base_;
    std::vector<Level> stack_;
    bool removedSomething_ = false;
};

} // namespace

RemovalResult removeItemAt(const PinnedFolder& folder, const std::string& name) {
    if (!folder.isOpen()) {
        return {folder.error(), false};
    }
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) {
        return {fileErrorFromNumber(EINVAL), false};
    }
    TreeRemoval removal(folder);
    const int error = removal.remove(name);
    if (error == 0) {
        return {};
    }
    return {errorFor(error), removal.removedSomething()};
}

std::optional<FileError> removeItem(const std::string& path) {
    const auto split = splitItemPath(path);
    if (!split) {
        return fileErrorFromNumber(EINVAL);
    }
    const PinnedFolder folder(split->folder);
    return removeItemAt(folder, split->name).error;
}

} // namespace dorvik::platform
