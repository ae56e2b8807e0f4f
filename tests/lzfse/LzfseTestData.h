#pragma once

// The LZFSE streams written by the reference encoder (tests/data/lzfse), and the helpers the
// codec tests share: SHA-256, block walking, deterministic pseudo-random data.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace dorvik::test {

// One line of the vectors' MANIFEST.
struct LzfseVector {
    std::string name; // "text-70k.lzfse"
    size_t decodedBytes = 0;
    std::string decodedSha256;   // lower-case hex
    std::string firstBlockMagic; // "bvx2"
};

std::vector<LzfseVector> lzfseVectors();
std::vector<uint8_t> readLzfseTestFile(const std::string& name);
std::string sha256Hex(std::span<const uint8_t> bytes);

// The stream with every "bvx2" block rewritten with the plain "bvx1" header, payloads unchanged.
std::vector<uint8_t> withV1Headers(std::span<const uint8_t> stream);

// The magics of a stream's blocks, in order, end of stream included.
std::vector<std::string> blockMagics(std::span<const uint8_t> stream);

// Deterministic bytes: uniformly random, and text-like records of names and numbers.
std::vector<uint8_t> randomBytes(size_t count, uint64_t seed);
std::vector<uint8_t> recordLikeBytes(size_t count, uint64_t seed);

} // namespace dorvik::test
