#pragma once

// Property lists, XML or binary, read with libplist.

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dorvik::platform {

// The entries of a property list's top-level dictionary whose values are strings. Empty when the
// bytes are no property list, its top level is no dictionary, or it nests deeper than any real
// one does.
std::map<std::string, std::string> propertyListStrings(std::span<const uint8_t> bytes);

// One value of a top-level dictionary, in the forms its readers look at.
struct PropertyListValue {
    enum class Kind : uint8_t { string, boolean, array, dictionary, other };
    Kind kind = Kind::other;
    std::string text;  // a string's characters
    bool flag = false; // a boolean's value
    // An array's elements that are strings; an element of another kind leaves none in its place.
    std::vector<std::optional<std::string>> elements;
};

// The top-level dictionary of a property list, or none when the bytes are no property list, its
// top level is no dictionary, or it nests deeper than any real one does.
std::optional<std::map<std::string, PropertyListValue>>
propertyListDictionary(std::span<const uint8_t> bytes);

} // namespace dorvik::platform
