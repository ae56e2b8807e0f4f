#include "scanning/ScanPaths.h"

#include "platform/HomeDirectory.h"

namespace dorvik {

std::string canonicalPath(std::string_view path) {
    if (path == dataVolumePath) {
        return "/";
    }
    if (path.size() > dataVolumePath.size() && path.starts_with(dataVolumePath) &&
        path[dataVolumePath.size()] == '/') {
        return std::string(path.substr(dataVolumePath.size()));
    }
    return std::string(path);
}

std::string displayPath(std::string_view path, std::string_view homeDirectory) {
    std::string canonical = canonicalPath(path);
    if (canonical == homeDirectory) {
        return "~";
    }
    if (canonical.size() > homeDirectory.size() && canonical.starts_with(homeDirectory) &&
        canonical[homeDirectory.size()] == '/') {
        return "~" + canonical.substr(homeDirectory.size());
    }
    return canonical;
}

std::string displayPath(std::string_view path) {
    return displayPath(path, platform::homeDirectory());
}

} // namespace dorvik
