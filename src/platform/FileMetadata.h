#pragma once

// A file's own metadata (mode, owner, times, extended attributes with the access control list)
// moved onto another file that is to take its place.

#include <string>

namespace dorvik::platform {

// Removes every extended attribute of the entry itself (a link is not followed); failures are
// ignored, an attribute the kernel will not let go simply stays.
void stripExtendedAttributes(const std::string& path);

// Gives `to` the extended attributes of `from` (its access control list among them), then its
// owner, permission bits and access and modification times. Zero, or the error number of the
// first step that failed. Neither path is followed if it is a link.
int copyMetadata(const std::string& from, const std::string& to);

} // namespace dorvik::platform
