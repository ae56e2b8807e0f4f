#pragma once

// The words the program shows. Its texts are English keys, written for a Mac; this table renders
// the keys that name a Mac (the Finder, macOS, APFS, "Macintosh HD" …) in the words of a Linux
// desktop, so that nothing a page or dorvik-cli shows is false here. Logic compares keys; only
// what is shown passes through the table, wherever it is shown.

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dorvik::Wording {

struct Rendering {
    std::string_view key;
    std::string_view shown;
};

// Every key the table renders, with its Linux words.
std::span<const Rendering> renderings();

// The Linux words of `key`; none when the key names nothing of a Mac.
std::optional<std::string_view> rendering(std::string_view key);

// What to show for `key`: its rendering, else the key itself.
std::string shown(std::string_view key);

} // namespace dorvik::Wording
