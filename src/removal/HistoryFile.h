#pragma once

// The JSON form of the deletion history, "history.json": one array of entries, newest first, each
// an object with "id", "date" (seconds since 2001-01-01 UTC, with the fraction), "originalPath",
// "trashPath" (left out for a permanent deletion), "size" and "restored", and for a trashed item
// "trashDevice", "trashInode" and "trashSize" together. Paths are written in the escaped form of
// JsonCoding, so any byte string reads back the same, and plain text written before reads as it
// was. Every key but "trashPath" and the three "trash…" numbers is required, and one bad entry
// fails the whole file.

#include "removal/HistoryEntry.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::HistoryFile {

inline constexpr std::string_view fileName = "history.json";

// The most entries the history keeps: a file with more is not one it wrote.
inline constexpr size_t maximumEntries = 5000;

// The largest file 5,000 entries can fill: two paths of PATH_MAX bytes each, every byte escaped
// at its longest ("\u0000" and two digits, 8 characters), and the other members. Larger is
// refused before it is read.
inline constexpr size_t maximumFileBytes = maximumEntries * (2 * 4096 * 8 + 512);

std::string encode(const std::vector<HistoryEntry>& entries);

// None when the text is no array of well-formed entries, or holds more than the history keeps.
// A "trashPath" of null reads as absent.
std::optional<std::vector<HistoryEntry>> decode(std::string_view text);

// One entry as a JSON object, for the journal that holds entries a line each.
nlohmann::json encodeEntry(const HistoryEntry& entry);
std::optional<HistoryEntry> decodeEntry(const nlohmann::json& object);

} // namespace dorvik::HistoryFile
