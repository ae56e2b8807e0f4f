#include "scanning/ScanPaths.h"

#include "platform/HomeDirectory.h"

namespace dorvik {

std::string displayPath(std::string_view path) {
    return displayPath(path, platform::homeDirectory());
}

} // namespace dorvik
