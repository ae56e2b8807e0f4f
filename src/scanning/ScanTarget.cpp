#include "scanning/ScanTarget.h"

#include "base/PathNames.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"

namespace dorvik {

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
        return pathName(folderPath_);
    case Kind::wholeDisk:
        return "Entire disk";
    case Kind::home:
        return "Home folder";
    }
    return {};
}

} // namespace dorvik
