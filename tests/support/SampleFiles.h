#pragma once

// Files with content of our choosing for the duplicate tests, and the scan that finds them.

#include "scanning/Scanner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <string>

namespace dorvik::test {

inline constexpr int64_t mebibyte = 1048576;

// Content of `length` bytes that depends on `seed`, with the byte at `flipAt` changed if given.
inline void writeContent(const std::string& path, int64_t length, int seed, int64_t flipAt = -1) {
    makeFolder(path.substr(0, path.rfind('/')));
    std::string bytes(static_cast<size_t>(length), '\0');
    uint32_t state = 2463534242u + static_cast<uint32_t>(seed);
    for (char& byte : bytes) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<char>(state);
    }
    if (flipAt >= 0) {
        bytes[static_cast<size_t>(flipAt)] ^= 0x5a;
    }
    std::ofstream(path, std::ios::binary).write(bytes.data(), length);
}

inline ScanResult scanOf(const std::string& folder) {
    Scanner scanner(ScanOptions{.threads = 1});
    auto result = scanner.scan(folder, {}, [](int64_t, int64_t, const std::string&) {});
    EXPECT_TRUE(result.has_value());
    return result ? std::move(*result) : ScanResult{};
}

} // namespace dorvik::test
