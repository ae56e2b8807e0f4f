#pragma once

// Finite-state entropy coding (tANS) as LZFSE uses it. A coder has a power-of-two number of
// states; each symbol owns as many consecutive states as its normalised frequency. The encoder
// walks the symbols backwards and writes bits forwards; the decoder starts from the encoder's
// final state and reads the same bits backwards, so symbols come out in their original order.
//
// For a symbol of frequency f among n = 2^N states, let k be the shift with n <= f·2^k < 2n.
// Its j-th state reads k bits when j < (2n >> k) - f and k - 1 bits otherwise; the state
// tables below are built from that rule on both sides.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace dorvik::Fse {

// Reads a bit stream from its last byte towards its first, most recently written bits first.
class BackwardBitReader {
public:
    // `region` ends with the stream's last byte; reading may reach back to the region's start.
    // `finalBits` (-8 .. 0) is minus the number of unused high bits in that last byte, and 0
    // when the last byte is full. None when the region is too short or the unused bits are not
    // zero.
    static std::optional<BackwardBitReader> open(std::span<const uint8_t> region, int finalBits);

    // Tops the accumulator up to at least 56 bits. False when that would read before the region.
    bool refill();

    // The next `count` bits (at most what the last refill left). Asking for more marks the
    // reader failed and gives zero.
    uint32_t pull(int count) {
        if (count > available_) {
            failed_ = true;
            return 0;
        }
        available_ -= count;
        const uint64_t value = bits_ >> available_;
        bits_ &= (uint64_t{1} << available_) - 1;
        return static_cast<uint32_t>(value);
    }

    bool failed() const { return failed_; }

private:
    BackwardBitReader(const uint8_t* begin, const uint8_t* next, uint64_t bits, int available)
        : begin_(begin), next_(next), bits_(bits), available_(available) {}

    const uint8_t* begin_;
    const uint8_t* next_; // the unread bytes are [begin_, next_)
    uint64_t bits_;       // `available_` bits; everything above them is zero
    int available_;
    bool failed_ = false;
};

// Collects bits low to high and stores them as little-endian bytes.
class BitWriter {
public:
    // `value` must fit in `count` bits; at most 64 bits may wait between two flushes.
    void push(uint64_t value, int count) {
        bits_ |= value << pending_;
        pending_ += count;
    }
    // Moves every whole byte out, leaving at most 7 bits pending.
    void flush(std::vector<uint8_t>& out);
    // Writes the last partial byte padded with zeros; returns minus the number of padding bits
    // (-7 .. 0), which the reader needs to find where the stream ends.
    int finish(std::vector<uint8_t>& out);

private:
    uint64_t bits_ = 0;
    int pending_ = 0;
};

// One state of a decoding table: the symbol it stands for, and the next state, which is
// `nextBase` plus `bits` bits read from the stream.
struct DecoderEntry {
    uint16_t nextBase = 0;
    uint8_t bits = 0;
    uint8_t symbol = 0;
};

// Fills `table` (one entry per state) from the frequencies. False when they add up to more
// states than the table has. States left over when they add up to fewer stay harmless: symbol
// 0, back to state 0.
bool buildDecoderTable(std::span<const uint16_t> frequencies, std::span<DecoderEntry> table);

inline uint8_t decodeSymbol(uint16_t& state, std::span<const DecoderEntry> table,
                            BackwardBitReader& in) {
    const DecoderEntry& entry = table[state];
    state = static_cast<uint16_t>(entry.nextBase + in.pull(entry.bits));
    return entry.symbol;
}

// How the encoder leaves a state for one symbol: states at or above `threshold` shed
// `highBits` bits, the others one bit fewer; the bits left, plus a delta, give the next state.
struct EncoderEntry {
    int32_t threshold = 0;
    int32_t highBits = 0;
    int32_t highDelta = 0;
    int32_t lowDelta = 0;
};

// One entry per symbol; symbols of frequency zero get no usable entry and must not be encoded.
std::vector<EncoderEntry> buildEncoderTable(std::span<const uint16_t> frequencies, uint32_t states);

inline void encodeSymbol(uint16_t& state, const EncoderEntry& entry, BitWriter& out) {
    const int32_t current = state;
    const bool high = current >= entry.threshold;
    const int32_t bits = high ? entry.highBits : entry.highBits - 1;
    out.push(static_cast<uint64_t>(current) & ((uint64_t{1} << bits) - 1), bits);
    state = static_cast<uint16_t>((high ? entry.highDelta : entry.lowDelta) + (current >> bits));
}

// Frequencies in proportion to `counts` that add up to exactly `states`, every symbol that
// occurs getting at least one state. All zero when nothing occurs. `states` must be at least the
// number of symbols.
std::vector<uint16_t> normalize(std::span<const uint32_t> counts, uint32_t states);

} // namespace dorvik::Fse
