#pragma once

// The "key file" text form of desktop entries, Flatpak metadata and similar files: groups in
// brackets, "key=value" lines, "#" comments.

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace dorvik {

using KeyFileGroup = std::map<std::string, std::string, std::less<>>;

struct KeyFile {
    std::map<std::string, KeyFileGroup, std::less<>> groups;

    // The value of `key` in `group`, escapes (\s \n \t \r \\) undone; none when either is absent.
    std::optional<std::string> value(std::string_view group, std::string_view key) const;
};

// Reads what it can: lines that are neither a group, a key nor a comment are passed over, and
// keys before the first group belong to none. A key met twice in a group keeps its first value.
// Localised keys ("Name[de]") stay keys of their own.
KeyFile parseKeyFile(std::string_view text);

} // namespace dorvik
