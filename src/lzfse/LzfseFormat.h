#pragma once

// The constants of the LZFSE stream format, shared by the decoder and the encoder: block magics,
// the sizes of the entropy tables, the per-block limits, and how L (literal length), M (match
// length) and D (match distance) values split into an entropy-coded symbol and raw extra bits.
// These numbers are the format: changing any of them breaks compatibility with other
// implementations.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace dorvik::LzfseFormat {

// Every block starts with one of these, stored little-endian ("bvx$", "bvx-", ...).
constexpr uint32_t endOfStreamMagic = 0x24787662;  // "bvx$"
constexpr uint32_t rawBlockMagic = 0x2d787662;     // "bvx-": stored bytes
constexpr uint32_t lzfseV1BlockMagic = 0x31787662; // "bvx1": LZFSE, plain header
constexpr uint32_t lzfseV2BlockMagic = 0x32787662; // "bvx2": LZFSE, packed header
constexpr uint32_t lzvnBlockMagic = 0x6e787662;    // "bvxn": LZVN

constexpr size_t magicBytes = 4;
constexpr size_t rawBlockHeaderBytes = 8;   // magic, decoded size
constexpr size_t lzvnBlockHeaderBytes = 12; // magic, decoded size, payload size

// Symbols and states of the four entropy coders of an LZFSE block. The number of states of each
// coder is a power of two: the sum of its normalised frequencies.
constexpr size_t lSymbols = 20;
constexpr size_t mSymbols = 20;
constexpr size_t dSymbols = 64;
constexpr size_t literalSymbols = 256;
constexpr uint32_t lStates = 64;
constexpr uint32_t mStates = 64;
constexpr uint32_t dStates = 256;
constexpr uint32_t literalStates = 1024;

// Literals go through four interleaved entropy coders, so a block's literal count is padded to a
// multiple of four.
constexpr size_t literalStreams = 4;
constexpr uint32_t maxMatchesPerBlock = 10000;
constexpr uint32_t maxLiteralsPerBlock = 4 * maxMatchesPerBlock;

// The match stream starts with this many zero bytes, so that reading it backwards can always load
// a whole 64-bit word.
constexpr size_t lmdPaddingBytes = 8;

// One value class (L, M or D): how many raw extra bits follow each symbol. The symbol's base
// value is the sum of the ranges of the symbols before it.
template <size_t N> struct ValueClass {
    std::array<uint8_t, N> extraBits{};
    std::array<uint32_t, N> base{};

    constexpr explicit ValueClass(const std::array<uint8_t, N>& bits) : extraBits(bits) {
        uint32_t next = 0;
        for (size_t symbol = 0; symbol < N; ++symbol) {
            base[symbol] = next;
            next += uint32_t{1} << extraBits[symbol];
        }
    }
    // The largest value the class can carry.
    constexpr uint32_t maxValue() const {
        return base[N - 1] + (uint32_t{1} << extraBits[N - 1]) - 1;
    }
};

constexpr ValueClass<lSymbols> lValues{
    std::array<uint8_t, lSymbols>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 3, 5, 8}};
constexpr ValueClass<mSymbols> mValues{
    std::array<uint8_t, mSymbols>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 5, 8, 11}};

// Distances come in groups of four symbols sharing one extra-bit count: 0, 1, ..., 15.
constexpr std::array<uint8_t, dSymbols> distanceExtraBits() {
    std::array<uint8_t, dSymbols> bits{};
    for (size_t symbol = 0; symbol < dSymbols; ++symbol) {
        bits[symbol] = static_cast<uint8_t>(symbol / 4);
    }
    return bits;
}
constexpr ValueClass<dSymbols> dValues{distanceExtraBits()};

constexpr uint32_t maxLValue = lValues.maxValue(); // 315
constexpr uint32_t maxMValue = mValues.maxValue(); // 2359
constexpr uint32_t maxDValue = dValues.maxValue(); // 262139
static_assert(maxLValue == 315 && maxMValue == 2359 && maxDValue == 262139);

// The symbol that carries `value` (which must be at most the class's maximum).
template <size_t N> constexpr uint8_t symbolOf(const ValueClass<N>& values, uint32_t value) {
    size_t symbol = N - 1;
    while (values.base[symbol] > value) {
        --symbol;
    }
    return static_cast<uint8_t>(symbol);
}

// The same for distances, in constant time: D + 4 lies in [2^(g+2), 2^(g+3)) for group g.
constexpr uint8_t distanceSymbolOf(uint32_t distance) {
    const uint32_t shifted = distance + 4;
    const int group = std::bit_width(shifted) - 3;
    return static_cast<uint8_t>(4 * group + static_cast<int>(shifted >> group) - 4);
}

// Little-endian loads and stores; callers check the bounds.
inline uint32_t load32(const uint8_t* bytes) {
    if constexpr (std::endian::native == std::endian::little) {
        uint32_t value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }
    return uint32_t{bytes[0]} | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 |
           uint32_t{bytes[3]} << 24;
}
inline uint16_t load16(const uint8_t* bytes) {
    return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}
inline uint64_t load64(const uint8_t* bytes) {
    if constexpr (std::endian::native == std::endian::little) {
        uint64_t value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }
    return uint64_t{load32(bytes)} | uint64_t{load32(bytes + 4)} << 32;
}
inline void append32(std::vector<uint8_t>& out, uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        out.push_back(static_cast<uint8_t>(value >> shift));
    }
}
inline void append16(std::vector<uint8_t>& out, uint16_t value) {
    out.push_back(static_cast<uint8_t>(value));
    out.push_back(static_cast<uint8_t>(value >> 8));
}
inline void append64(std::vector<uint8_t>& out, uint64_t value) {
    append32(out, static_cast<uint32_t>(value));
    append32(out, static_cast<uint32_t>(value >> 32));
}
inline void appendBytes(std::vector<uint8_t>& out, std::span<const uint8_t> bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

} // namespace dorvik::LzfseFormat
