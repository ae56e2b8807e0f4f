#pragma once

// Where the system's own folders ("/Applications", "/etc/xdg/autostart", "/var/lib/flatpak" …)
// are looked for. Only tests and benchmarks move them, by setting DORVIK_SYSTEM_ROOT to a folder
// that stands in for "/"; the program itself never sets it.

#include <string>
#include <string_view>

namespace dorvik::platform {

// The absolute system path, below $DORVIK_SYSTEM_ROOT when that is set to an absolute path.
std::string systemPath(std::string_view absolutePath);

} // namespace dorvik::platform
