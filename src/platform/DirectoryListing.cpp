#include "platform/DirectoryListing.h"

#include <dirent.h>
#include <fcntl.h>

namespace dorvik::platform {

namespace {

bool isDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace

// Reads the raw entries itself: the C library's directory streams cost three more system calls
// a directory.
DirectoryListing listDirectory(int fd) {
    DirectoryListing listing;
    if (fd < 0) {
        return listing;
    }
    alignas(dirent64) char buffer[32768];
    while (true) {
        const ssize_t got = getdents64(fd, buffer, sizeof buffer);
        if (got <= 0) {
            listing.complete = got == 0;
            break;
        }
        for (ssize_t offset = 0; offset < got;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + offset);
            offset += entry->d_reclen;
            if (isDotOrDotDot(entry->d_name)) {
                continue;
            }
            ListedEntry& listed = listing.entries.emplace_back();
            listed.name = entry->d_name;
            listed.statusRead =
                fstatat(fd, entry->d_name, &listed.status, AT_SYMLINK_NOFOLLOW) == 0;
        }
    }
    if (!listing.complete) {
        listing.entries.clear();
    }
    return listing;
}

} // namespace dorvik::platform
