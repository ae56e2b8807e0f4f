#pragma once

// How an item goes: deleted at once, or moved to the Trash where it can be put back.

#include <cstdint>
#include <string_view>

namespace dorvik {

enum class Removal : uint8_t {
    permanent = 0,
    trash = 1,
};

// "permanent" or "trash".
std::string_view caseName(Removal removal);

// What will happen, in the user's words: "Moved to Trash" or "Deleted immediately".
std::string_view outcomeLabel(Removal removal);

} // namespace dorvik
