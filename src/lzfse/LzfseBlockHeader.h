#pragma once

// The header of an LZFSE-compressed block and its two stored forms: "bvx1" keeps every field in
// a plain little-endian record, "bvx2" packs the counts and states into three 64-bit words and
// the frequency tables into a short prefix code. Reading checks every field against the format's
// limits, so that the decoder can trust a header it was given.

#include "lzfse/LzfseFormat.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace dorvik {

struct LzfseBlockHeader {
    uint32_t rawBytes = 0;            // bytes the block decodes to
    uint32_t literalCount = 0;        // literal bytes, a multiple of four once padded
    uint32_t matchCount = 0;          // L, M, D triples
    uint32_t literalPayloadBytes = 0; // the literal bit stream
    uint32_t lmdPayloadBytes = 0;     // the L, M, D bit stream, padding included
    int32_t literalFinalBits = 0;     // -7 .. 0, see Fse::BackwardBitReader::open
    std::array<uint16_t, LzfseFormat::literalStreams> literalStates{};
    int32_t lmdFinalBits = 0;
    uint16_t lState = 0;
    uint16_t mState = 0;
    uint16_t dState = 0;
    std::array<uint16_t, LzfseFormat::lSymbols> lFrequencies{};
    std::array<uint16_t, LzfseFormat::mSymbols> mFrequencies{};
    std::array<uint16_t, LzfseFormat::dSymbols> dFrequencies{};
    std::array<uint16_t, LzfseFormat::literalSymbols> literalFrequencies{};
};

struct StoredBlockHeader {
    LzfseBlockHeader header;
    size_t storedBytes = 0; // where the payload starts, counted from the magic
};

// `bytes` starts at the block's magic and may run past the header. None when the header is cut
// short or any field is out of range.
std::optional<StoredBlockHeader> readBlockHeaderV1(std::span<const uint8_t> bytes);
std::optional<StoredBlockHeader> readBlockHeaderV2(std::span<const uint8_t> bytes);

// Appends the header, magic included. Fields must be in range.
void appendBlockHeaderV1(const LzfseBlockHeader& header, std::vector<uint8_t>& out);
void appendBlockHeaderV2(const LzfseBlockHeader& header, std::vector<uint8_t>& out);

} // namespace dorvik
