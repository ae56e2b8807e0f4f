// Arbitrary bytes as a launch agent's property list and as a desktop entry: the readers must
// never crash, hang or allocate without bound.

#include "system/DesktopEntry.h"
#include "system/LaunchItem.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace dorvik;
    const std::span<const uint8_t> bytes(data, size);
    if (const auto item =
            launchItemFromPropertyList("/fuzz/agent.plist", bytes, LaunchScope::userAgent)) {
        if (item->label.empty() && item->path.empty()) {
            __builtin_trap();
        }
    }
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto keys = DesktopEntry::groupKeys(text, "Desktop Entry")) {
        if (const auto exec = DesktopEntry::value(*keys, "Exec")) {
            (void)DesktopEntry::execProgram(*exec);
        }
        (void)DesktopEntry::isShownIn(*keys, {"GNOME"});
    }
    return 0;
}
