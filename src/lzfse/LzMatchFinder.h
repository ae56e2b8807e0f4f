#pragma once

// The search half of the LZFSE and LZVN encoders: cuts the input into literal runs and matches
// (copies of earlier bytes). Hash chains over 8-byte prefixes with a bounded number of
// candidates a position, the latest position of each 4-byte prefix for short matches, the
// previous distance tried first (the entropy coder stores a repeated distance in a few bits),
// and one step of lazy evaluation: a match is put off when the next position has a longer one. Long
// stretches without matches are skipped over faster and faster, so that incompressible input costs
// little time.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace dorvik {

// `literalCount` bytes copied as they are, then `matchLength` bytes copied from `distance` bytes
// back. The last sequence of an input may have no match (length 0, distance 0).
struct LzSequence {
    uint32_t literalCount = 0;
    uint32_t matchLength = 0;
    uint32_t distance = 0;
};

class LzMatchFinder {
public:
    // The input must stay alive while the finder is used, and hold fewer than 2^32 bytes.
    LzMatchFinder(std::span<const uint8_t> input, uint32_t maxDistance);

    // The next sequence; false once the whole input has been handed out.
    bool next(LzSequence& sequence);

private:
    struct Match {
        uint32_t length = 0;
        uint32_t distance = 0;
    };

    Match longestMatchAt(uint32_t position) const;
    uint32_t matchLength(uint32_t position, uint32_t earlier) const;
    void insertUpTo(uint32_t end);
    uint32_t hashAt(uint32_t position) const;
    uint32_t shortHashAt(uint32_t position) const;

    std::span<const uint8_t> input_;
    uint32_t maxDistance_;
    uint32_t size_;
    uint32_t searchEnd_;  // the last position with four bytes to hash, plus one
    uint32_t anchor_ = 0; // the first byte not yet handed out
    uint32_t position_ = 0;
    uint32_t inserted_ = 0; // positions below this are in the chains (or were skipped)
    uint32_t previousDistance_ = 0;
    bool finished_ = false;
    int hashBits_;
    int shortHashBits_;
    // The most recent position of each hash, plus one (zero: none), and for each position (modulo
    // the window) the previous one with the same hash, plus one. The short table has no chains.
    std::vector<uint32_t> heads_;
    std::vector<uint32_t> chain_;
    std::vector<uint32_t> shortHeads_;
};

} // namespace dorvik
