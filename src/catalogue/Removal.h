#pragma once

// How an item goes: deleted at once, moved to the Trash where it can be put back, or, for an
// application that a package manager installed, uninstalled by that manager.

#include <cstdint>
#include <string_view>

namespace dorvik {

enum class Removal : uint8_t {
    permanent = 0,
    trash = 1,
    uninstall = 2, // a Flatpak app: its folder is Flatpak's to remove, and no Trash gets it
};

// "permanent", "trash" or "uninstall".
std::string_view caseName(Removal removal);

// What will happen, in the user's words: "Moved to Trash", "Deleted immediately" or
// "Uninstalled with Flatpak".
std::string_view outcomeLabel(Removal removal);

} // namespace dorvik
