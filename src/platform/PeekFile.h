#pragma once

// Reading a user's file to show it, without changing what the scan measures: a preview must
// leave the file's access time ("Last opened") as it found it.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace dorvik::platform {

// The first `maxBytes` bytes of the file (fewer when it is shorter), or none when it cannot be
// opened or read. The file is opened with O_NOATIME where the kernel allows it (the owner, or a
// process that may change any file's times); otherwise its access time is put back after the
// read, where that is allowed.
std::optional<std::vector<uint8_t>> peekFile(const std::string& path, size_t maxBytes);

} // namespace dorvik::platform
