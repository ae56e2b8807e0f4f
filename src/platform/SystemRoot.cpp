#include "platform/SystemRoot.h"

#include <cstdlib>

namespace dorvik::platform {

std::string systemPath(std::string_view absolutePath) {
    const char* root = std::getenv("DORVIK_SYSTEM_ROOT");
    if (root == nullptr || root[0] != '/') {
        return std::string(absolutePath);
    }
    std::string moved(root);
    while (moved.size() > 1 && moved.back() == '/') {
        moved.pop_back();
    }
    return moved + std::string(absolutePath);
}

} // namespace dorvik::platform
