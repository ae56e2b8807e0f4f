#pragma once

// What the operating system says about the volume that holds a path.

#include <cstdint>
#include <optional>
#include <string>

namespace dorvik::platform {

struct VolumeCapacity {
    int64_t total = 0;     // bytes
    int64_t available = 0; // bytes an unprivileged user may still write
};

// None when the volume cannot be asked.
std::optional<VolumeCapacity> volumeCapacity(const std::string& path);

// The label of the filesystem mounted from the device that holds `path`, when it has one.
std::optional<std::string> volumeLabel(const std::string& path);

// The label under which `labelFolder` (normally /dev/disk/by-label) links to `device`. The names
// there escape unusual bytes as "\xNN"; the label comes back unescaped.
std::optional<std::string> labelOfDevice(const std::string& device, const std::string& labelFolder);

} // namespace dorvik::platform
