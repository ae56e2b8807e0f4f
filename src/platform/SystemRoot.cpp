#include "platform/SystemRoot.h"

#include "base/PathNames.h"

#include <cstdlib>

namespace dorvik::platform {

std::string systemRoot() {
    const char* root = std::getenv("DORVIK_SYSTEM_ROOT");
    if (root == nullptr || root[0] != '/') {
        return {};
    }
    std::string folder = withoutTrailingSlashes(root);
    return folder == "/" ? std::string() : folder;
}

std::string systemPath(std::string_view absolutePath) {
    return systemRoot() + std::string(absolutePath);
}

} // namespace dorvik::platform
