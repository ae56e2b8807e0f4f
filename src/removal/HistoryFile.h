#pragma once

// The JSON form of the deletion history, "history.json": one array of entries, newest first, each
// an object with "id", "date" (seconds since 2001-01-01 UTC, with the fraction), "originalPath",
// "trashPath" (left out for a permanent deletion), "size" and "restored". Every key but
// "trashPath" is required, and one bad entry fails the whole file. Paths are in the escaped form
// of JsonCoding, so a name that is no UTF-8 still leads back to its file.

#include "removal/HistoryEntry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::HistoryFile {

inline constexpr std::string_view fileName = "history.json";

std::string encode(const std::vector<HistoryEntry>& entries);

// None when the text is no array of well-formed entries. A "trashPath" of null reads as absent.
std::optional<std::vector<HistoryEntry>> decode(std::string_view text);

} // namespace dorvik::HistoryFile
