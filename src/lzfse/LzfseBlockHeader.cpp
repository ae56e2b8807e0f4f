#include "lzfse/LzfseBlockHeader.h"

#include <numeric>

namespace dorvik {

using namespace LzfseFormat;

namespace {

// "bvx1": a plain record. Byte offsets of its fields; at offset 8 lies the sum of the two payload
// sizes, which readers do not need. The frequency tables follow one another as 16-bit values,
// and the record is padded to a multiple of four bytes.
namespace V1 {
constexpr size_t rawBytes = 4;
constexpr size_t literalCount = 12;
constexpr size_t matchCount = 16;
constexpr size_t literalPayloadBytes = 20;
constexpr size_t lmdPayloadBytes = 24;
constexpr size_t literalFinalBits = 28;
constexpr size_t literalStates = 32;
constexpr size_t lmdFinalBits = 40;
constexpr size_t lState = 44;
constexpr size_t mState = 46;
constexpr size_t dState = 48;
constexpr size_t frequencies = 50;
constexpr size_t frequencyCount = lSymbols + mSymbols + dSymbols + literalSymbols;
constexpr size_t storedBytes = (frequencies + 2 * frequencyCount + 3) / 4 * 4; // 772
static_assert(storedBytes == 772);
} // namespace V1

// "bvx2": three packed 64-bit words, then the frequency tables in a prefix code.
namespace V2 {
constexpr size_t rawBytes = 4;
constexpr size_t words = 8;
constexpr size_t frequencies = 32;
// The largest code is 14 bits, so the tables never take more than this.
constexpr size_t maxFrequencyBytes = (V1::frequencyCount * 14 + 7) / 8;

struct Field {
    int word;
    int shift;
    int width;
};
constexpr Field literalCount{0, 0, 20};
constexpr Field literalPayloadBytes{0, 20, 20};
constexpr Field matchCount{0, 40, 20};
constexpr Field literalFinalBits{0, 60, 3}; // stored plus 7
constexpr Field literalState0{1, 0, 10};    // then 10, 20, 30
constexpr Field lmdPayloadBytes{1, 40, 20};
constexpr Field lmdFinalBits{1, 60, 3}; // stored plus 7
constexpr Field headerBytes{2, 0, 32};
constexpr Field lState{2, 32, 10};
constexpr Field mState{2, 42, 10};
constexpr Field dState{2, 52, 10};
constexpr int finalBitsBias = 7;

uint32_t get(const std::array<uint64_t, 3>& packed, Field field, int extraShift = 0) {
    const uint64_t mask = (uint64_t{1} << field.width) - 1;
    return static_cast<uint32_t>((packed[field.word] >> (field.shift + extraShift)) & mask);
}

void put(std::array<uint64_t, 3>& packed, Field field, uint64_t value, int extraShift = 0) {
    const uint64_t mask = (uint64_t{1} << field.width) - 1;
    packed[field.word] |= (value & mask) << (field.shift + extraShift);
}

// The frequency prefix code, read from the low bits: 0 and 1 take two bits, 2 and 3 three,
// 4 to 7 five, 8 to 23 eight and 24 to 1047 fourteen.
struct Code {
    uint32_t bits;
    int length;
};

Code frequencyCode(uint32_t value) {
    if (value < 2) {
        return {value << 1, 2};
    }
    if (value < 4) {
        return {(value - 2) << 2 | 1, 3};
    }
    if (value < 8) {
        return {(value - 4) << 3 | 3, 5};
    }
    if (value < 24) {
        return {(value - 8) << 4 | 7, 8};
    }
    return {(value - 24) << 4 | 15, 14};
}

// Decodes one value from the low bits of `window`.
std::pair<uint16_t, int> frequencyValue(uint32_t window) {
    if ((window & 1) == 0) {
        return {static_cast<uint16_t>(window >> 1 & 1), 2};
    }
    if ((window & 3) == 1) {
        return {static_cast<uint16_t>(2 + (window >> 2 & 1)), 3};
    }
    if ((window & 7) == 3) {
        return {static_cast<uint16_t>(4 + (window >> 3 & 3)), 5};
    }
    if ((window & 15) == 7) {
        return {static_cast<uint16_t>(8 + (window >> 4 & 15)), 8};
    }
    return {static_cast<uint16_t>(24 + (window >> 4 & 1023)), 14};
}
} // namespace V2

// The four frequency tables in their stored order.
std::array<std::span<uint16_t>, 4> tablesOf(LzfseBlockHeader& header) {
    return {header.lFrequencies, header.mFrequencies, header.dFrequencies,
            header.literalFrequencies};
}
std::array<std::span<const uint16_t>, 4> tablesOf(const LzfseBlockHeader& header) {
    return {header.lFrequencies, header.mFrequencies, header.dFrequencies,
            header.literalFrequencies};
}

bool frequenciesFit(std::span<const uint16_t> frequencies, uint32_t states) {
    return std::accumulate(frequencies.begin(), frequencies.end(), uint32_t{0}) <= states;
}

bool hasValidFields(const LzfseBlockHeader& header) {
    const auto finalBitsValid = [](int32_t bits) { return bits >= -7 && bits <= 0; };
    bool valid = header.literalCount <= maxLiteralsPerBlock &&
                 header.matchCount <= maxMatchesPerBlock &&
                 finalBitsValid(header.literalFinalBits) && finalBitsValid(header.lmdFinalBits) &&
                 header.lState < lStates && header.mState < mStates && header.dState < dStates &&
                 frequenciesFit(header.lFrequencies, lStates) &&
                 frequenciesFit(header.mFrequencies, mStates) &&
                 frequenciesFit(header.dFrequencies, dStates) &&
                 frequenciesFit(header.literalFrequencies, literalStates);
    for (const uint16_t state : header.literalStates) {
        valid = valid && state < literalStates;
    }
    return valid;
}

} // namespace

std::optional<StoredBlockHeader> readBlockHeaderV1(std::span<const uint8_t> bytes) {
    if (bytes.size() < V1::storedBytes || load32(bytes.data()) != lzfseV1BlockMagic) {
        return std::nullopt;
    }
    const uint8_t* at = bytes.data();
    StoredBlockHeader stored;
    stored.storedBytes = V1::storedBytes;
    LzfseBlockHeader& header = stored.header;
    header.rawBytes = load32(at + V1::rawBytes);
    header.literalCount = load32(at + V1::literalCount);
    header.matchCount = load32(at + V1::matchCount);
    header.literalPayloadBytes = load32(at + V1::literalPayloadBytes);
    header.lmdPayloadBytes = load32(at + V1::lmdPayloadBytes);
    header.literalFinalBits = static_cast<int32_t>(load32(at + V1::literalFinalBits));
    for (size_t i = 0; i < literalStreams; ++i) {
        header.literalStates[i] = load16(at + V1::literalStates + 2 * i);
    }
    header.lmdFinalBits = static_cast<int32_t>(load32(at + V1::lmdFinalBits));
    header.lState = load16(at + V1::lState);
    header.mState = load16(at + V1::mState);
    header.dState = load16(at + V1::dState);
    const uint8_t* next = at + V1::frequencies;
    for (const std::span<uint16_t> table : tablesOf(header)) {
        for (uint16_t& frequency : table) {
            frequency = load16(next);
            next += 2;
        }
    }
    if (!hasValidFields(header)) {
        return std::nullopt;
    }
    return stored;
}

std::optional<StoredBlockHeader> readBlockHeaderV2(std::span<const uint8_t> bytes) {
    if (bytes.size() < V2::frequencies || load32(bytes.data()) != lzfseV2BlockMagic) {
        return std::nullopt;
    }
    std::array<uint64_t, 3> packed{};
    for (size_t i = 0; i < packed.size(); ++i) {
        packed[i] = load64(bytes.data() + V2::words + 8 * i);
    }
    const uint32_t headerBytes = V2::get(packed, V2::headerBytes);
    if (headerBytes < V2::frequencies || headerBytes > bytes.size() ||
        headerBytes > V2::frequencies + V2::maxFrequencyBytes) {
        return std::nullopt;
    }
    StoredBlockHeader stored;
    stored.storedBytes = headerBytes;
    LzfseBlockHeader& header = stored.header;
    header.rawBytes = load32(bytes.data() + V2::rawBytes);
    header.literalCount = V2::get(packed, V2::literalCount);
    header.literalPayloadBytes = V2::get(packed, V2::literalPayloadBytes);
    header.matchCount = V2::get(packed, V2::matchCount);
    header.literalFinalBits =
        static_cast<int32_t>(V2::get(packed, V2::literalFinalBits)) - V2::finalBitsBias;
    for (size_t i = 0; i < literalStreams; ++i) {
        header.literalStates[i] = static_cast<uint16_t>(
            V2::get(packed, V2::literalState0, static_cast<int>(i) * V2::literalState0.width));
    }
    header.lmdPayloadBytes = V2::get(packed, V2::lmdPayloadBytes);
    header.lmdFinalBits =
        static_cast<int32_t>(V2::get(packed, V2::lmdFinalBits)) - V2::finalBitsBias;
    header.lState = static_cast<uint16_t>(V2::get(packed, V2::lState));
    header.mState = static_cast<uint16_t>(V2::get(packed, V2::mState));
    header.dState = static_cast<uint16_t>(V2::get(packed, V2::dState));

    // No table bytes at all means every frequency is zero.
    if (headerBytes > V2::frequencies) {
        const uint8_t* next = bytes.data() + V2::frequencies;
        const uint8_t* end = bytes.data() + headerBytes;
        uint32_t window = 0;
        int windowBits = 0;
        for (const std::span<uint16_t> table : tablesOf(header)) {
            for (uint16_t& frequency : table) {
                while (next < end && windowBits <= 24) {
                    window |= uint32_t{*next++} << windowBits;
                    windowBits += 8;
                }
                const auto [value, length] = V2::frequencyValue(window);
                if (length > windowBits) {
                    return std::nullopt;
                }
                frequency = value;
                window >>= length;
                windowBits -= length;
            }
        }
        // The tables must end in the header's last byte.
        if (next != end || windowBits >= 8) {
            return std::nullopt;
        }
    }
    if (!hasValidFields(header)) {
        return std::nullopt;
    }
    return stored;
}

void appendBlockHeaderV1(const LzfseBlockHeader& header, std::vector<uint8_t>& out) {
    const size_t start = out.size();
    append32(out, lzfseV1BlockMagic);
    append32(out, header.rawBytes);
    append32(out, header.literalPayloadBytes + header.lmdPayloadBytes);
    append32(out, header.literalCount);
    append32(out, header.matchCount);
    append32(out, header.literalPayloadBytes);
    append32(out, header.lmdPayloadBytes);
    append32(out, static_cast<uint32_t>(header.literalFinalBits));
    for (const uint16_t state : header.literalStates) {
        append16(out, state);
    }
    append32(out, static_cast<uint32_t>(header.lmdFinalBits));
    append16(out, header.lState);
    append16(out, header.mState);
    append16(out, header.dState);
    for (const std::span<const uint16_t> table : tablesOf(header)) {
        for (const uint16_t frequency : table) {
            append16(out, frequency);
        }
    }
    out.resize(start + V1::storedBytes, 0);
}

void appendBlockHeaderV2(const LzfseBlockHeader& header, std::vector<uint8_t>& out) {
    std::vector<uint8_t> tables;
    uint64_t window = 0;
    int windowBits = 0;
    for (const std::span<const uint16_t> table : tablesOf(header)) {
        for (const uint16_t frequency : table) {
            const V2::Code code = V2::frequencyCode(frequency);
            window |= uint64_t{code.bits} << windowBits;
            windowBits += code.length;
            while (windowBits >= 8) {
                tables.push_back(static_cast<uint8_t>(window));
                window >>= 8;
                windowBits -= 8;
            }
        }
    }
    if (windowBits > 0) {
        tables.push_back(static_cast<uint8_t>(window));
    }

    std::array<uint64_t, 3> packed{};
    V2::put(packed, V2::literalCount, header.literalCount);
    V2::put(packed, V2::literalPayloadBytes, header.literalPayloadBytes);
    V2::put(packed, V2::matchCount, header.matchCount);
    V2::put(packed, V2::literalFinalBits,
            static_cast<uint64_t>(header.literalFinalBits + V2::finalBitsBias));
    for (size_t i = 0; i < literalStreams; ++i) {
        V2::put(packed, V2::literalState0, header.literalStates[i],
                static_cast<int>(i) * V2::literalState0.width);
    }
    V2::put(packed, V2::lmdPayloadBytes, header.lmdPayloadBytes);
    V2::put(packed, V2::lmdFinalBits,
            static_cast<uint64_t>(header.lmdFinalBits + V2::finalBitsBias));
    V2::put(packed, V2::headerBytes, V2::frequencies + tables.size());
    V2::put(packed, V2::lState, header.lState);
    V2::put(packed, V2::mState, header.mState);
    V2::put(packed, V2::dState, header.dState);

    append32(out, lzfseV2BlockMagic);
    append32(out, header.rawBytes);
    for (const uint64_t word : packed) {
        append64(out, word);
    }
    appendBytes(out, tables);
}

} // namespace dorvik
