#pragma once

// Why the file system refused an operation, sorted into the few kinds the program words
// differently, with the system's own description for everything else.

#include <string>

namespace dorvik::platform {

enum class FileErrorKind {
    noSuchFile,   // ENOENT
    noPermission, // EACCES, EPERM, EROFS
    inUse,        // EBUSY, ETXTBSY
    mountPoint,   // another mount stands there: never crossed, never removed
    other,
};

struct FileError {
    FileErrorKind kind = FileErrorKind::other;
    std::string description; // the system's text for the error number

    bool operator==(const FileError&) const = default;
};

// The error for an error number as the C library reports it.
FileError fileErrorFromNumber(int errorNumber);

// The refusal of an entry where another mount stands.
FileError mountPointError();

} // namespace dorvik::platform
