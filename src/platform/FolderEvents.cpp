#include "platform/FolderEvents.h"

#include <array>
#include <cerrno>
#include <sys/inotify.h>
#include <unistd.h>

namespace dorvik::platform {

std::optional<int> openFolderEvents(const char* folder) {
    const int descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (descriptor < 0) {
        return std::nullopt;
    }
    // The entries of the folder itself, as a write to a directory would tell, and the folder's
    // own rename or deletion.
    constexpr uint32_t changes = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                 IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
    if (inotify_add_watch(descriptor, folder, changes) < 0) {
        ::close(descriptor);
        return std::nullopt;
    }
    return descriptor;
}

void drainFolderEvents(int descriptor) {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    while (true) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            continue;
        }
        if (count < 0 && errno == EINTR) {
            continue;
        }
        return; // EAGAIN: nothing left
    }
}

void closeFolderEvents(int descriptor) {
    ::close(descriptor);
}

} // namespace dorvik::platform
