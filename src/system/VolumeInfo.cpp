#include "system/VolumeInfo.h"

#include "platform/Volume.h"

namespace dorvik {

std::optional<VolumeInfo> volumeInfo(const std::string& path) {
    const auto capacity = platform::volumeCapacity(path);
    if (!capacity) {
        return std::nullopt;
    }
    std::string name = platform::volumeLabel(path).value_or("");
    if (name.empty()) {
        name = std::string(fallbackVolumeName);
    }
    return VolumeInfo{std::move(name), capacity->total, capacity->available, capacity->available};
}

} // namespace dorvik
