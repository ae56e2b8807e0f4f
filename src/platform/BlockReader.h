#pragma once

// Reading a user's file from its start in fixed blocks, for comparing contents: the file is never
// held whole, and its access time ("Last opened") stays as it was where the kernel allows.

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace dorvik::platform {

// Reads at most `budget` bytes from `offset` on, each time up to `buffer.size()` bytes
// (fewer only at the end of the budget or of the file), and hands every block to `consume`. False
// when the file cannot be opened. A read that fails ends the reading quietly: what was handed over
// stands, as if the file ended there.
bool readInBlocks(const std::string& path, int64_t budget, std::span<uint8_t> buffer,
                  const std::function<void(std::span<const uint8_t>)>& consume, int64_t offset = 0);

} // namespace dorvik::platform

namespace dorvik::platform {

// True when both files open and hold the same bytes to the end; read side by side in blocks.
bool contentsEqual(const std::string& first, const std::string& second);

} // namespace dorvik::platform
