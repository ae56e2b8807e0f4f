#include "lzfse/LzMatchFinder.h"

#include "lzfse/LzfseFormat.h"

#include <algorithm>
#include <bit>

namespace dorvik {

namespace {

constexpr uint32_t minMatch = 4;
// The chains link positions whose next eight bytes hash alike: in records of little-endian
// numbers, four-byte prefixes (runs of zero high bytes, mostly) would crowd them with poor
// candidates. Matches of four to seven bytes come from a second table on four-byte prefixes
// that keeps only the latest position of each.
constexpr size_t chainedPrefixBytes = 8;
// Hash tables as large as these, or a quarter of the input's size when that is smaller: clearing a
// table larger than the input would cost more than the search.
constexpr int maxHashBits = 17;
constexpr int maxShortHashBits = 16;
constexpr int minHashBits = 8;
constexpr uint32_t shortSearchBelow = chainedPrefixBytes;
// The chains remember one window of positions, which must cover the longest distance.
constexpr int windowBits = 18;
constexpr uint32_t windowMask = (uint32_t{1} << windowBits) - 1;
static_assert(LzfseFormat::maxDValue < (uint32_t{1} << windowBits));
// Candidates tried a position: more finds longer matches, fewer runs faster.
constexpr int maxCandidates = 8;
// A match this long is taken at once, with no further search or lazy look-ahead.
constexpr uint32_t goodEnoughLength = 64;
// After every 2^skipShift bytes without a match, the search steps one byte further.
constexpr int skipShift = 8;
constexpr uint32_t maxSkipStep = 64;

} // namespace

LzMatchFinder::LzMatchFinder(std::span<const uint8_t> input, uint32_t maxDistance)
    : input_(input), maxDistance_(std::min(maxDistance, windowMask)),
      size_(static_cast<uint32_t>(input.size())),
      searchEnd_(size_ >= chainedPrefixBytes ? size_ - chainedPrefixBytes + 1 : 0),
      hashBits_(std::clamp(static_cast<int>(std::bit_width(size_)) - 2, minHashBits, maxHashBits)),
      shortHashBits_(
          std::clamp(static_cast<int>(std::bit_width(size_)) - 2, minHashBits, maxShortHashBits)),
      heads_(size_t{1} << hashBits_, 0),
      chain_(std::min<size_t>(size_t{1} << windowBits, size_), 0),
      shortHeads_(size_t{1} << shortHashBits_, 0) {}

// Multiplicative (Fibonacci) hashing: the high bits of the product mix every input bit.
uint32_t LzMatchFinder::hashAt(uint32_t position) const {
    const uint64_t prefix = LzfseFormat::load64(input_.data() + position);
    return static_cast<uint32_t>((prefix * 0x9e3779b97f4a7c15u) >> (64 - hashBits_));
}

uint32_t LzMatchFinder::shortHashAt(uint32_t position) const {
    const uint32_t prefix = LzfseFormat::load32(input_.data() + position);
    return (prefix * 0x9e3779b1u) >> (32 - shortHashBits_);
}

void LzMatchFinder::insertUpTo(uint32_t end) {
    const uint32_t last = std::min(end, searchEnd_);
    for (uint32_t position = inserted_; position < last; ++position) {
        shortHeads_[shortHashAt(position)] = position + 1;
        uint32_t& head = heads_[hashAt(position)];
        chain_[position & windowMask] = head;
        head = position + 1;
    }
    inserted_ = std::max(inserted_, end);
}

uint32_t LzMatchFinder::matchLength(uint32_t position, uint32_t earlier) const {
    const uint8_t* a = input_.data() + position;
    const uint8_t* b = input_.data() + earlier;
    const uint32_t limit = size_ - position;
    uint32_t length = 0;
    while (limit - length >= 8) {
        const uint64_t difference =
            LzfseFormat::load64(a + length) ^ LzfseFormat::load64(b + length);
        if (difference != 0) {
            return length + static_cast<uint32_t>(std::countr_zero(difference) / 8);
        }
        length += 8;
    }
    while (length < limit && a[length] == b[length]) {
        ++length;
    }
    return length;
}

LzMatchFinder::Match LzMatchFinder::longestMatchAt(uint32_t position) const {
    Match best;
    if (previousDistance_ != 0 && previousDistance_ <= position) {
        const uint32_t length = matchLength(position, position - previousDistance_);
        if (length >= minMatch) {
            best = {length, previousDistance_};
        }
    }
    const uint32_t limit = size_ - position;
    uint32_t candidate = heads_[hashAt(position)];
    for (int tries = 0; candidate != 0 && tries < maxCandidates; ++tries) {
        const uint32_t earlier = candidate - 1;
        const uint32_t distance = position - earlier;
        if (distance > maxDistance_ || best.length >= goodEnoughLength || best.length == limit) {
            break;
        }
        // A longer match must also agree on the byte just past the best one so far.
        if (input_[earlier + best.length] == input_[position + best.length]) {
            const uint32_t length = matchLength(position, earlier);
            if (length > best.length && length >= minMatch) {
                best = {length, distance};
            }
        }
        candidate = chain_[earlier & windowMask];
    }
    const uint32_t shortCandidate = shortHeads_[shortHashAt(position)];
    if (best.length < shortSearchBelow && shortCandidate != 0 &&
        position - (shortCandidate - 1) <= maxDistance_) {
        const uint32_t length = matchLength(position, shortCandidate - 1);
        if (length > best.length && length >= minMatch) {
            best = {length, position - (shortCandidate - 1)};
        }
    }
    return best;
}

bool LzMatchFinder::next(LzSequence& sequence) {
    if (finished_) {
        return false;
    }
    while (position_ < searchEnd_) {
        insertUpTo(position_);
        Match match = longestMatchAt(position_);
        insertUpTo(position_ + 1);
        if (match.length == 0) {
            const uint32_t step = 1 + std::min((position_ - anchor_) >> skipShift, maxSkipStep);
            position_ += step;
            if (step > 1) {
                inserted_ = position_; // skipped positions stay out of the chains
            }
            continue;
        }
        while (match.length < goodEnoughLength && position_ + 1 < searchEnd_) {
            const Match later = longestMatchAt(position_ + 1);
            if (later.length <= match.length) {
                break;
            }
            ++position_;
            match = later;
            insertUpTo(position_ + 1);
        }
        // Bytes just before the match may match too (skipping can pass over its start).
        while (position_ > anchor_ && position_ > match.distance &&
               input_[position_ - 1] == input_[position_ - 1 - match.distance]) {
            --position_;
            ++match.length;
        }
        sequence = {position_ - anchor_, match.length, match.distance};
        previousDistance_ = match.distance;
        position_ += match.length;
        anchor_ = position_;
        return true;
    }
    finished_ = true;
    if (anchor_ == size_) {
        return false;
    }
    sequence = {size_ - anchor_, 0, 0};
    anchor_ = size_;
    return true;
}

} // namespace dorvik
