#include "platform/FileError.h"

#include <cerrno>
#include <system_error>

namespace dorvik::platform {

FileError fileErrorFromNumber(int errorNumber) {
    FileErrorKind kind = FileErrorKind::other;
    switch (errorNumber) {
    case ENOENT:
        kind = FileErrorKind::noSuchFile;
        break;
    case EACCES:
    case EPERM:
    case EROFS:
        kind = FileErrorKind::noPermission;
        break;
    case EBUSY:
    case ETXTBSY:
        kind = FileErrorKind::inUse;
        break;
    default:
        break;
    }
    // The generic category's message is strerror's text, and safe on any thread.
    return FileError{kind, std::generic_category().message(errorNumber)};
}

FileError mountPointError() {
    return FileError{FileErrorKind::mountPoint, "Another mount stands here."};
}

} // namespace dorvik::platform
