// Writes LZVN opcodes for the sequences the match finder gives. A literal run longer than three
// bytes goes out in literal-only opcodes, leaving up to three bytes to ride with the match;
// each match takes the cheapest opcode its distance and length allow, and whatever length that
// opcode cannot carry follows in match-only opcodes, which reuse the distance just set.

#include "lzfse/LzMatchFinder.h"
#include "lzfse/Lzvn.h"

#include <algorithm>

namespace dorvik::Lzvn {

namespace {

constexpr uint32_t maxLiteralWithMatch = 3;
constexpr uint32_t maxSmallLength = 15;
constexpr uint32_t maxLargeLength = 255 + largeLengthBias;
// The low three bits of a small-distance opcode carry the distance's high bits, but 6 and 7 there
// mean other opcodes.
constexpr uint32_t maxSmallDistance = 5 << 8 | 255;
constexpr uint32_t maxMediumDistance = 16383;
constexpr uint32_t maxMediumMatch = 31 + minMatch;

// Opcodes of the form LLMMMxxx can hold fewer match lengths as the literal grows, because the
// other bit patterns belong to other opcodes.
constexpr uint32_t maxShortFormMatch(uint32_t literal) {
    constexpr uint32_t maxMatchField[] = {7, 5, 3, 1};
    return maxMatchField[literal] + minMatch;
}

class OpcodeWriter {
public:
    explicit OpcodeWriter(std::span<const uint8_t> input) : input_(input) {}

    void literals(uint32_t count) { lengthOnlyOpcodes(largeLiteralOpcode, count); }

    // `literal` (0-3) bytes, then a match.
    void match(uint32_t literal, uint32_t length, uint32_t distance) {
        if (distance == previousDistance_ && literal == 0) {
            lengthOnlyOpcodes(largeMatchOpcode, length);
            return;
        }
        const auto ll = static_cast<uint8_t>(literal << 6);
        uint32_t carried = std::min(length, maxShortFormMatch(literal));
        const auto mmm = [&carried] { return static_cast<uint8_t>((carried - minMatch) << 3); };
        if (distance == previousDistance_) {
            out_.push_back(ll | mmm() | 6);
        } else if (distance <= maxSmallDistance) {
            out_.push_back(ll | mmm() | static_cast<uint8_t>(distance >> 8));
            out_.push_back(static_cast<uint8_t>(distance));
        } else if (distance <= maxMediumDistance) {
            carried = std::min(length, maxMediumMatch);
            const uint32_t field = carried - minMatch;
            out_.push_back(static_cast<uint8_t>(mediumDistanceOpcode | literal << 3 | field >> 2));
            const uint32_t word = distance << 2 | (field & 3);
            out_.push_back(static_cast<uint8_t>(word));
            out_.push_back(static_cast<uint8_t>(word >> 8));
        } else {
            out_.push_back(ll | mmm() | 7);
            out_.push_back(static_cast<uint8_t>(distance));
            out_.push_back(static_cast<uint8_t>(distance >> 8));
        }
        copyLiterals(literal);
        previousDistance_ = distance;
        lengthOnlyOpcodes(largeMatchOpcode, length - carried);
    }

    // The match's bytes need no copying: the decoder makes them.
    void skipMatched(uint32_t length) { next_ += length; }

    std::vector<uint8_t> finish() {
        out_.push_back(endOfStreamOpcode);
        out_.resize(out_.size() + endOfStreamBytes - 1, 0);
        return std::move(out_);
    }

private:
    // Literal-only or match-only opcodes (the latter reuse the previous distance) for `length`
    // bytes: a one-byte form up to 15, a two-byte form up to 271.
    void lengthOnlyOpcodes(uint8_t largeOpcode, uint32_t length) {
        while (length > 0) {
            const uint32_t chunk = std::min(length, maxLargeLength);
            if (chunk <= maxSmallLength) {
                out_.push_back(static_cast<uint8_t>(largeOpcode | chunk));
            } else {
                out_.push_back(largeOpcode);
                out_.push_back(static_cast<uint8_t>(chunk - largeLengthBias));
            }
            if (largeOpcode == largeLiteralOpcode) {
                copyLiterals(chunk);
            }
            length -= chunk;
        }
    }

    void copyLiterals(uint32_t count) {
        out_.insert(out_.end(), input_.begin() + static_cast<ptrdiff_t>(next_),
                    input_.begin() + static_cast<ptrdiff_t>(next_ + count));
        next_ += count;
    }

    std::span<const uint8_t> input_;
    size_t next_ = 0; // the next input byte to copy as a literal
    uint32_t previousDistance_ = 0;
    std::vector<uint8_t> out_;
};

} // namespace

std::vector<uint8_t> encodeBlock(std::span<const uint8_t> input) {
    OpcodeWriter writer(input);
    LzMatchFinder finder(input, maxDistance);
    LzSequence sequence;
    while (finder.next(sequence)) {
        if (sequence.matchLength == 0) {
            writer.literals(sequence.literalCount);
            continue;
        }
        const uint32_t riding = std::min(sequence.literalCount, maxLiteralWithMatch);
        writer.literals(sequence.literalCount - riding);
        writer.match(riding, sequence.matchLength, sequence.distance);
        writer.skipMatched(sequence.matchLength);
    }
    return writer.finish();
}

} // namespace dorvik::Lzvn
