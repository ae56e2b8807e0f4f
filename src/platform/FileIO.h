#pragma once

// Whole-file reads and writes for the program's own files.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dorvik::platform {

// Writes `bytes` to a temporary file beside `path`, flushes it to disk and renames it over
// `path`, so that a crash leaves the old file or the new one, never half of one. Creates the
// parent folder. False on any failure, with the old file left as it was.
bool writeFileAtomically(const std::string& path, std::span<const uint8_t> bytes);
bool writeFileAtomically(const std::string& path, const std::string& text);

// Creates the file at `path` with `text` in it and the permission bits of `mode`, only if nothing
// stands there (a link included). Zero, or the error number: EEXIST when the name is taken. A
// file that could not be written completely is removed again.
int writeNewFile(const std::string& path, const std::string& text, unsigned mode);

// The whole file, or none when it cannot be read, is larger than `maxBytes` or is no regular
// file (a FIFO or a device is refused at once, never waited on).
std::optional<std::vector<uint8_t>> readWholeFile(const std::string& path, size_t maxBytes);

} // namespace dorvik::platform
