#pragma once

// Random identities in the standard text form, upper case: "E621E1F8-C36C-495A-93FC-0C247A3E6E5F".

#include <optional>
#include <string>
#include <string_view>

namespace dorvik::Uuid {

// A fresh random (version 4) UUID.
std::string make();

// The text in the standard upper-case form, or none when it is no UUID (8-4-4-4-12 hex digits
// of either case).
std::optional<std::string> parse(std::string_view text);

} // namespace dorvik::Uuid
