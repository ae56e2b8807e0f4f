#include "scanning/ScanTarget.h"

#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "scanning/ScanPaths.h"

namespace dorvik {

namespace {

std::string lastPathComponent(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos || path == "/") {
        return path;
    }
    return path.substr(slash + 1);
}

} // namespace

std::string ScanTarget::rootPath() const {
    switch (kind_) {
    case Kind::folder:
        return folderPath_;
    case Kind::wholeDisk:
        return platform::pathExists(std::string(dataVolumePath)) ? std::string(dataVolumePath)
                                                                 : "/";
    case Kind::home:
        return platform::homeDirectory();
    }
    return folderPath_;
}

std::string ScanTarget::title() const {
    switch (kind_) {
    case Kind::folder:
        return lastPathComponent(folderPath_);
    case Kind::wholeDisk:
        return "Entire disk";
    case Kind::home:
        return "Home folder";
    }
    return {};
}

} // namespace dorvik
