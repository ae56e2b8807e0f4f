#pragma once

// The user-level forms of a path. Node paths are real paths and may carry the data volume's
// prefix; whatever is compared, shown or exported goes through the canonical form.

#include <string>
#include <string_view>

namespace dorvik {

inline constexpr std::string_view dataVolumePath = "/System/Volumes/Data";

// The path without the "/System/Volumes/Data" prefix: that path itself becomes "/".
std::string canonicalPath(std::string_view path);

// The canonical path with the home folder written as "~".
std::string displayPath(std::string_view path, std::string_view homeDirectory);

// The same, with the home folder of this process.
std::string displayPath(std::string_view path);

} // namespace dorvik
