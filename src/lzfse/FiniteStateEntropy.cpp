#include "lzfse/FiniteStateEntropy.h"

#include <algorithm>
#include <bit>

namespace dorvik::Fse {

namespace {

// The accumulator is kept below 64 bits so that a refill never needs a full 64-bit shift.
constexpr int refilledBits = 56;
constexpr int maxAccumulatorBits = 63;

uint64_t loadLittleEndian(const uint8_t* bytes, int count) {
    uint64_t value = 0;
    for (int i = count - 1; i >= 0; --i) {
        value = value << 8 | bytes[i];
    }
    return value;
}

// The shift k with states <= frequency·2^k < 2·states.
int stateShift(uint32_t frequency, uint32_t states) {
    return std::countl_zero(frequency) - std::countl_zero(states);
}

} // namespace

std::optional<BackwardBitReader> BackwardBitReader::open(std::span<const uint8_t> region,
                                                         int finalBits) {
    if (finalBits < -8 || finalBits > 0) {
        return std::nullopt;
    }
    // A full last byte loads seven bytes, a partial one eight, so that the accumulator starts
    // with 56 to 63 bits.
    const int loadBytes = finalBits == 0 ? 7 : 8;
    if (region.size() < static_cast<size_t>(loadBytes)) {
        return std::nullopt;
    }
    const uint8_t* next = region.data() + region.size() - loadBytes;
    const uint64_t bits = loadLittleEndian(next, loadBytes);
    const int available = loadBytes * 8 + finalBits;
    if ((bits >> available) != 0) {
        return std::nullopt;
    }
    return BackwardBitReader(region.data(), next, bits, available);
}

bool BackwardBitReader::refill() {
    const int wantedBytes = (maxAccumulatorBits - available_) / 8;
    if (wantedBytes == 0) {
        return true;
    }
    if (next_ - begin_ < wantedBytes) {
        return false;
    }
    next_ -= wantedBytes;
    bits_ = bits_ << (wantedBytes * 8) | loadLittleEndian(next_, wantedBytes);
    available_ += wantedBytes * 8;
    return available_ >= refilledBits;
}

void BitWriter::flush(std::vector<uint8_t>& out) {
    const int whole = pending_ / 8;
    if (whole == 0) {
        return;
    }
    uint8_t bytes[8];
    for (int i = 0; i < 8; ++i) {
        bytes[i] = static_cast<uint8_t>(bits_ >> (8 * i));
    }
    out.insert(out.end(), bytes, bytes + whole);
    bits_ = whole == 8 ? 0 : bits_ >> (8 * whole);
    pending_ -= 8 * whole;
}

int BitWriter::finish(std::vector<uint8_t>& out) {
    flush(out);
    if (pending_ == 0) {
        return 0;
    }
    out.push_back(static_cast<uint8_t>(bits_));
    const int finalBits = pending_ - 8;
    bits_ = 0;
    pending_ = 0;
    return finalBits;
}

bool buildDecoderTable(std::span<const uint16_t> frequencies, std::span<DecoderEntry> table) {
    const auto states = static_cast<uint32_t>(table.size());
    uint32_t total = 0;
    for (const uint16_t frequency : frequencies) {
        total += frequency;
    }
    if (total > states) {
        return false;
    }
    std::fill(table.begin(), table.end(), DecoderEntry{});
    size_t next = 0;
    for (size_t symbol = 0; symbol < frequencies.size(); ++symbol) {
        const uint32_t frequency = frequencies[symbol];
        if (frequency == 0) {
            continue;
        }
        const int shift = stateShift(frequency, states);
        const uint32_t firstShorter = ((2 * states) >> shift) - frequency;
        for (uint32_t j = 0; j < frequency; ++j) {
            DecoderEntry& entry = table[next++];
            entry.symbol = static_cast<uint8_t>(symbol);
            if (j < firstShorter) {
                entry.bits = static_cast<uint8_t>(shift);
                entry.nextBase = static_cast<uint16_t>(((frequency + j) << shift) - states);
            } else {
                entry.bits = static_cast<uint8_t>(shift - 1);
                entry.nextBase = static_cast<uint16_t>((j - firstShorter) << (shift - 1));
            }
        }
    }
    return true;
}

std::vector<EncoderEntry> buildEncoderTable(std::span<const uint16_t> frequencies,
                                            uint32_t states) {
    std::vector<EncoderEntry> table(frequencies.size());
    int32_t first = 0; // the first state of the current symbol
    const auto n = static_cast<int32_t>(states);
    for (size_t symbol = 0; symbol < frequencies.size(); ++symbol) {
        const int32_t frequency = frequencies[symbol];
        if (frequency == 0) {
            continue;
        }
        const int shift = stateShift(static_cast<uint32_t>(frequency), states);
        EncoderEntry& entry = table[symbol];
        entry.highBits = shift;
        entry.threshold = (frequency << shift) - n;
        entry.highDelta = first - frequency + (n >> shift);
        // With no shift every state is "high", so the low delta is never used.
        entry.lowDelta = shift > 0 ? first - frequency + (n >> (shift - 1)) : 0;
        first += frequency;
    }
    return table;
}

std::vector<uint16_t> normalize(std::span<const uint32_t> counts, uint32_t states) {
    std::vector<uint16_t> frequencies(counts.size(), 0);
    uint64_t total = 0;
    for (const uint32_t count : counts) {
        total += count;
    }
    if (total == 0) {
        return frequencies;
    }
    // Round each share to the nearest state, at least one, then settle the difference on the
    // largest frequencies, where one state more or less costs the least.
    int64_t assigned = 0;
    for (size_t symbol = 0; symbol < counts.size(); ++symbol) {
        if (counts[symbol] == 0) {
            continue;
        }
        const uint64_t share = (uint64_t{counts[symbol]} * states + total / 2) / total;
        frequencies[symbol] = static_cast<uint16_t>(std::max<uint64_t>(share, 1));
        assigned += frequencies[symbol];
    }
    const auto largest = [&frequencies] {
        return static_cast<size_t>(std::max_element(frequencies.begin(), frequencies.end()) -
                                   frequencies.begin());
    };
    if (assigned < states) {
        frequencies[largest()] += static_cast<uint16_t>(states - assigned);
    }
    while (assigned > states) {
        // Every used symbol keeps one state; there are fewer symbols than states, so the
        // largest frequency is above one while the sum is too high.
        --frequencies[largest()];
        --assigned;
    }
    return frequencies;
}

} // namespace dorvik::Fse
