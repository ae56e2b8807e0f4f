// Encodes a stream: the match finder's sequences are cut into (L, M, D) triples within the
// format's limits and gathered into blocks of at most 10000 triples and 40000 literals; each
// block is entropy-coded as "bvx2", or stored as "bvx-" when that comes out smaller. Inputs
// below a few kilobytes go through LZVN instead, where frequency tables would cost more than
// they save.

#include "lzfse/FiniteStateEntropy.h"
#include "lzfse/LzMatchFinder.h"
#include "lzfse/Lzfse.h"
#include "lzfse/LzfseBlockHeader.h"
#include "lzfse/LzfseFormat.h"
#include "lzfse/Lzvn.h"

#include <algorithm>
#include <cmath>

namespace dorvik::Lzfse {

using namespace LzfseFormat;

namespace {

constexpr size_t lzvnThreshold = 4096;
// The match finder counts positions in 32 bits; larger inputs are cut into independent parts.
constexpr size_t maxSegmentBytes = size_t{1} << 30;
// A triple without a match still carries a distance; this one means "whatever comes before".
constexpr uint32_t anyDistance = 0;

struct Triple {
    uint32_t literal;
    uint32_t match;
    uint32_t distance; // anyDistance for a literal-only triple
};

template <size_t N> std::vector<uint32_t> emptyCounts() {
    return std::vector<uint32_t>(N, 0);
}

template <size_t N>
void copyFrequencies(const std::vector<uint16_t>& from, std::array<uint16_t, N>& to) {
    std::copy(from.begin(), from.end(), to.begin());
}

template <size_t N>
void encodeValue(uint32_t value, const ValueClass<N>& values, uint8_t symbol,
                 const std::vector<Fse::EncoderEntry>& table, uint16_t& state,
                 Fse::BitWriter& out) {
    out.push(value - values.base[symbol], values.extraBits[symbol]);
    Fse::encodeSymbol(state, table[symbol], out);
}

// The literal bytes and triples of one block, as the entropy coder sees them: literals padded
// to whole groups of four, distances replaced by their stored codes.
struct BlockSymbols {
    std::vector<uint8_t> literals;
    std::vector<Triple> triples;
    std::vector<uint32_t> distanceCodes;
    std::vector<uint32_t> literalCounts = emptyCounts<literalSymbols>();
    std::vector<uint32_t> lCounts = emptyCounts<lSymbols>();
    std::vector<uint32_t> mCounts = emptyCounts<mSymbols>();
    std::vector<uint32_t> dCounts = emptyCounts<dSymbols>();
};

BlockSymbols symbolsOf(std::span<const uint8_t> literals, std::span<const Triple> triples) {
    BlockSymbols block;
    block.literals.assign(literals.begin(), literals.end());
    block.literals.resize((literals.size() + literalStreams - 1) / literalStreams * literalStreams,
                          0);
    block.triples.assign(triples.begin(), triples.end());

    // A distance equal to the previous one in the block is stored as 0. A literal-only triple
    // takes the previous distance too, or 1 at the start of a block (always valid after a
    // literal).
    block.distanceCodes.resize(triples.size());
    uint32_t previous = 0;
    for (size_t i = 0; i < triples.size(); ++i) {
        uint32_t distance = triples[i].distance;
        if (distance == anyDistance) {
            distance = previous != 0 ? previous : 1;
        }
        block.distanceCodes[i] = distance == previous ? 0 : distance;
        previous = distance;
    }

    for (const uint8_t byte : block.literals) {
        ++block.literalCounts[byte];
    }
    for (size_t i = 0; i < triples.size(); ++i) {
        ++block.lCounts[symbolOf(lValues, triples[i].literal)];
        ++block.mCounts[symbolOf(mValues, triples[i].match)];
        ++block.dCounts[distanceSymbolOf(block.distanceCodes[i])];
    }
    return block;
}

// Roughly the bits an entropy coder spends on symbols of these counts: log2(states / frequency)
// a symbol, plus the extra bits of its value class if it has one.
double estimatedBits(const std::vector<uint32_t>& counts, const std::vector<uint16_t>& frequencies,
                     uint32_t states, std::span<const uint8_t> extraBits = {}) {
    double bits = 0;
    for (size_t symbol = 0; symbol < counts.size(); ++symbol) {
        if (counts[symbol] == 0) {
            continue;
        }
        const double extra = extraBits.empty() ? 0 : extraBits[symbol];
        bits +=
            counts[symbol] * (std::log2(static_cast<double>(states) / frequencies[symbol]) + extra);
    }
    return bits;
}

// Entropy-codes one block as "bvx2", header and payloads, unless its estimated size already
// reaches `sizeToBeat` bytes; then appends nothing and returns false.
bool appendLzfseBlock(const BlockSymbols& block, uint32_t rawBytes, size_t sizeToBeat,
                      std::vector<uint8_t>& out) {
    const std::vector<uint16_t> literalFrequencies =
        Fse::normalize(block.literalCounts, literalStates);
    const std::vector<uint16_t> lFrequencies = Fse::normalize(block.lCounts, lStates);
    const std::vector<uint16_t> mFrequencies = Fse::normalize(block.mCounts, mStates);
    const std::vector<uint16_t> dFrequencies = Fse::normalize(block.dCounts, dStates);
    const double payloadBits =
        estimatedBits(block.literalCounts, literalFrequencies, literalStates) +
        estimatedBits(block.lCounts, lFrequencies, lStates, lValues.extraBits) +
        estimatedBits(block.mCounts, mFrequencies, mStates, mValues.extraBits) +
        estimatedBits(block.dCounts, dFrequencies, dStates, dValues.extraBits);
    if (payloadBits / 8 >= static_cast<double>(sizeToBeat)) {
        return false;
    }

    LzfseBlockHeader header;
    header.rawBytes = rawBytes;
    header.literalCount = static_cast<uint32_t>(block.literals.size());
    header.matchCount = static_cast<uint32_t>(block.triples.size());
    copyFrequencies(literalFrequencies, header.literalFrequencies);
    copyFrequencies(lFrequencies, header.lFrequencies);
    copyFrequencies(mFrequencies, header.mFrequencies);
    copyFrequencies(dFrequencies, header.dFrequencies);

    // Both streams are written from the last symbol to the first, because the decoder reads
    // them backwards.
    std::vector<uint8_t> literalPayload;
    literalPayload.reserve(block.literals.size() * 10 / 8 + 8);
    {
        const auto table = Fse::buildEncoderTable(literalFrequencies, literalStates);
        Fse::BitWriter bits;
        std::array<uint16_t, literalStreams> states{};
        for (size_t i = block.literals.size(); i > 0; i -= literalStreams) {
            for (size_t stream = literalStreams; stream-- > 0;) {
                const uint8_t byte = block.literals[i - literalStreams + stream];
                Fse::encodeSymbol(states[stream], table[byte], bits);
            }
            bits.flush(literalPayload);
        }
        header.literalFinalBits = bits.finish(literalPayload);
        header.literalStates = states;
        header.literalPayloadBytes = static_cast<uint32_t>(literalPayload.size());
    }

    std::vector<uint8_t> lmdPayload(lmdPaddingBytes, 0);
    lmdPayload.reserve(lmdPaddingBytes + block.triples.size() * 8 + 8);
    {
        const auto lTable = Fse::buildEncoderTable(lFrequencies, lStates);
        const auto mTable = Fse::buildEncoderTable(mFrequencies, mStates);
        const auto dTable = Fse::buildEncoderTable(dFrequencies, dStates);
        Fse::BitWriter bits;
        for (size_t i = block.triples.size(); i-- > 0;) {
            const uint32_t distance = block.distanceCodes[i];
            encodeValue(distance, dValues, distanceSymbolOf(distance), dTable, header.dState, bits);
            const uint32_t match = block.triples[i].match;
            encodeValue(match, mValues, symbolOf(mValues, match), mTable, header.mState, bits);
            const uint32_t literal = block.triples[i].literal;
            encodeValue(literal, lValues, symbolOf(lValues, literal), lTable, header.lState, bits);
            bits.flush(lmdPayload);
        }
        header.lmdFinalBits = bits.finish(lmdPayload);
        header.lmdPayloadBytes = static_cast<uint32_t>(lmdPayload.size());
    }

    appendBlockHeaderV2(header, out);
    appendBytes(out, literalPayload);
    appendBytes(out, lmdPayload);
    return true;
}

void appendRawBlock(std::span<const uint8_t> bytes, std::vector<uint8_t>& out) {
    append32(out, rawBlockMagic);
    append32(out, static_cast<uint32_t>(bytes.size()));
    appendBytes(out, bytes);
}

// Gathers triples into blocks and writes each block once it is full.
class BlockWriter {
public:
    BlockWriter(std::span<const uint8_t> input, std::vector<uint8_t>& out)
        : input_(input), out_(out) {}

    void add(const LzSequence& sequence) {
        uint32_t literal = sequence.literalCount;
        while (literal > maxLValue) {
            addTriple({maxLValue, 0, anyDistance});
            literal -= maxLValue;
        }
        uint32_t match = sequence.matchLength;
        if (match == 0) {
            if (literal > 0) {
                addTriple({literal, 0, anyDistance});
            }
            return;
        }
        // A match too long for one triple continues in triples without literals.
        while (match > 0) {
            const uint32_t part = std::min(match, maxMValue);
            addTriple({literal, part, sequence.distance});
            literal = 0;
            match -= part;
        }
    }

    void finish() { writeBlock(); }

private:
    void addTriple(const Triple& triple) {
        if (triples_.size() == maxMatchesPerBlock ||
            literals_.size() + triple.literal > maxLiteralsPerBlock) {
            writeBlock();
        }
        const auto from = input_.begin() + static_cast<ptrdiff_t>(next_);
        literals_.insert(literals_.end(), from, from + triple.literal);
        triples_.push_back(triple);
        next_ += size_t{triple.literal} + triple.match;
    }

    void writeBlock() {
        if (triples_.empty()) {
            return;
        }
        const std::span<const uint8_t> raw = input_.subspan(blockStart_, next_ - blockStart_);
        const size_t rawBlockBytes = raw.size() + rawBlockHeaderBytes;
        const size_t start = out_.size();
        if (!appendLzfseBlock(symbolsOf(literals_, triples_), static_cast<uint32_t>(raw.size()),
                              rawBlockBytes, out_) ||
            out_.size() - start >= rawBlockBytes) {
            out_.resize(start);
            appendRawBlock(raw, out_);
        }
        literals_.clear();
        triples_.clear();
        blockStart_ = next_;
    }

    std::span<const uint8_t> input_;
    std::vector<uint8_t>& out_;
    size_t blockStart_ = 0; // where the block being gathered starts in the input
    size_t next_ = 0;       // the input byte after everything gathered
    std::vector<uint8_t> literals_;
    std::vector<Triple> triples_;
};

void appendSmallInput(std::span<const uint8_t> input, std::vector<uint8_t>& out) {
    const std::vector<uint8_t> payload = Lzvn::encodeBlock(input);
    if (payload.size() + lzvnBlockHeaderBytes >= input.size() + rawBlockHeaderBytes) {
        appendRawBlock(input, out);
        return;
    }
    append32(out, lzvnBlockMagic);
    append32(out, static_cast<uint32_t>(input.size()));
    append32(out, static_cast<uint32_t>(payload.size()));
    appendBytes(out, payload);
}

} // namespace

std::vector<uint8_t> encode(std::span<const uint8_t> input) {
    // Room for the worst case, stored blocks throughout, so that the output is never copied
    // while it grows; what is left over goes at the end.
    std::vector<uint8_t> out;
    out.reserve(input.size() + input.size() / 1024 + 64);
    if (!input.empty() && input.size() < lzvnThreshold) {
        appendSmallInput(input, out);
    } else {
        for (size_t start = 0; start < input.size(); start += maxSegmentBytes) {
            const std::span<const uint8_t> segment =
                input.subspan(start, std::min(maxSegmentBytes, input.size() - start));
            LzMatchFinder finder(segment, maxDValue);
            BlockWriter writer(segment, out);
            LzSequence sequence;
            while (finder.next(sequence)) {
                writer.add(sequence);
            }
            writer.finish();
        }
    }
    append32(out, endOfStreamMagic);
    out.shrink_to_fit();
    return out;
}

} // namespace dorvik::Lzfse
