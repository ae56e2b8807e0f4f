#pragma once

// The path vocabulary every folder shares. Paths are byte strings: nothing here looks at the
// file system, and a piece of a path is what lies between two slashes.

#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

// Where a Mac keeps the user's data; a real path that holds it is shown without the prefix.
inline constexpr std::string_view dataVolumePath = "/System/Volumes/Data";

// The path without the "/System/Volumes/Data" prefix: that path itself becomes "/".
std::string canonicalPath(std::string_view path);

// The canonical path with the home folder written as "~".
std::string displayPath(std::string_view path, std::string_view homeDirectory);

// `path` is `folder` itself or lies below it, piece by piece: "/a/bc" is not under "/a/b", and
// every absolute path is under "/".
bool isAtOrUnder(std::string_view path, std::string_view folder);

// `path` lies below `folder` and is not `folder` itself.
bool isUnder(std::string_view path, std::string_view folder);

// The path with the slashes at its end taken off; "/" stays "/".
std::string withoutTrailingSlashes(std::string_view path);

// The folder that holds `path`, trailing slashes aside: "/a/b" gives "/a", "/a" gives "/", "/"
// stays "/", and a single relative piece has no parent (the empty text).
std::string parentPath(std::string_view path);

// The last piece of `path`, trailing slashes aside: "/a/b/" gives "b"; "/" stays "/".
std::string pathName(std::string_view path);

// The pieces of `path` in order, empty ones (from "//" or the slashes at either end) left out;
// they point into `path`.
std::vector<std::string_view> pathPieces(std::string_view path);

// `name` inside `folder`, with exactly one slash between them.
std::string childPath(std::string_view folder, std::string_view name);

// The text with its ASCII capitals in lower case; every other byte stays as it is.
std::string asciiLowerCase(std::string_view text);

// The text after the last "." of a name, lower-cased as above; empty for a name without one, or
// whose only dot leads it (a hidden name has no extension).
std::string lowerCaseExtension(std::string_view name);

} // namespace dorvik
