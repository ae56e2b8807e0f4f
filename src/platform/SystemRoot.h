#pragma once

// Where the system's own folders ("/Applications", "/etc/xdg/autostart", "/var/lib/flatpak" …)
// are looked for. Only tests and benchmarks move them, by setting DORVIK_SYSTEM_ROOT to a folder
// laid out like a root, so that system-wide places are read from there and never from this
// computer; the program itself never sets it.

#include <string>
#include <string_view>

namespace dorvik::platform {

// $DORVIK_SYSTEM_ROOT without a trailing slash when it is an absolute path; "" on every computer.
std::string systemRoot();

// The absolute system path below systemRoot().
std::string systemPath(std::string_view absolutePath);

} // namespace dorvik::platform
