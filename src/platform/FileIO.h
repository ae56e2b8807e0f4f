#pragma once

// Whole-file reads and writes for the program's own files.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dorvik::platform {

// The permission bits of the program's own files: they list what the user has, scanned and
// removed.
inline constexpr unsigned privateFileMode = 0600;

// Writes `bytes` to a temporary file beside `path` ("<path>.tmp-<pid>-<random>"), flushes it to
// disk and renames it over `path`, so that a crash leaves the old file or the new one, never half
// of one. Creates the parent folder. The file gets `mode` (less the umask). False on any failure,
// with the old file left as it was.
bool writeFileAtomically(const std::string& path, std::span<const uint8_t> bytes,
                         unsigned mode = privateFileMode);
bool writeFileAtomically(const std::string& path, const std::string& text,
                         unsigned mode = privateFileMode);

// Creates the file at `path` with `text` in it and the permission bits of `mode`, only if nothing
// stands there (a link included). Zero, or the error number: EEXIST when the name is taken. A
// file that could not be written completely is removed again.
int writeNewFile(const std::string& path, const std::string& text, unsigned mode);

// The whole file, or none when it cannot be read, is no regular file or is larger than
// `maxBytes`. A FIFO or a device is never waited for: it is opened without blocking and refused.
std::optional<std::vector<uint8_t>> readWholeFile(const std::string& path, size_t maxBytes);

} // namespace dorvik::platform
