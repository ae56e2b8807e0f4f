#pragma once

// Property lists, XML or binary, read with libplist.

#include <cstdint>
#include <map>
#include <span>
#include <string>

namespace dorvik::platform {

// The entries of a property list's top-level dictionary whose values are strings. Empty when the
// bytes are no property list, its top level is no dictionary, or it nests deeper than any real
// one does.
std::map<std::string, std::string> propertyListStrings(std::span<const uint8_t> bytes);

} // namespace dorvik::platform
