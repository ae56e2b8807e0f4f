// Decodes an LZFSE stream block by block. The input is untrusted: every size in a header is
// checked against the input left and the output allowed before anything is read or reserved,
// every literal and match against its block, and every distance against the output so far.
// Each block consumes at least its magic, so the loop ends.
//
// An LZFSE block holds two bit streams, both read backwards: the literal bytes, coded by four
// interleaved entropy coders sharing one table, then the (L, M, D) triples. A triple emits L
// literals, then copies M bytes from D bytes back; D = 0 repeats the block's previous distance.

#include "lzfse/FiniteStateEntropy.h"
#include "lzfse/Lzfse.h"
#include "lzfse/LzfseBlockHeader.h"
#include "lzfse/LzfseFormat.h"
#include "lzfse/Lzvn.h"

#include <array>
#include <memory>

namespace dorvik::Lzfse {

using namespace LzfseFormat;

namespace {

// The bytes the stream's block headers say it decodes to, found without decoding anything; none
// when a header is malformed or the stream has no end. Every block says its decoded size, so a
// stream that would unfold into more than its caller allows is refused before memory is taken.
std::optional<size_t> declaredBytes(std::span<const uint8_t> input) {
    size_t total = 0;
    size_t at = 0;
    while (true) {
        const std::span<const uint8_t> rest = input.subspan(at);
        if (rest.size() < magicBytes) {
            return std::nullopt;
        }
        size_t blockBytes = 0;
        uint32_t rawBytes = 0;
        switch (load32(rest.data())) {
        case endOfStreamMagic:
            return total;
        case rawBlockMagic:
            if (rest.size() < rawBlockHeaderBytes) {
                return std::nullopt;
            }
            rawBytes = load32(rest.data() + magicBytes);
            blockBytes = rawBlockHeaderBytes + size_t{rawBytes};
            break;
        case lzvnBlockMagic:
            if (rest.size() < lzvnBlockHeaderBytes) {
                return std::nullopt;
            }
            rawBytes = load32(rest.data() + magicBytes);
            blockBytes = lzvnBlockHeaderBytes + size_t{load32(rest.data() + magicBytes + 4)};
            break;
        case lzfseV1BlockMagic:
        case lzfseV2BlockMagic: {
            const auto stored = load32(rest.data()) == lzfseV1BlockMagic ? readBlockHeaderV1(rest)
                                                                         : readBlockHeaderV2(rest);
            if (!stored) {
                return std::nullopt;
            }
            rawBytes = stored->header.rawBytes;
            blockBytes = stored->storedBytes + size_t{stored->header.literalPayloadBytes} +
                         size_t{stored->header.lmdPayloadBytes};
            break;
        }
        default:
            return std::nullopt;
        }
        if (blockBytes > rest.size()) {
            return std::nullopt;
        }
        total += rawBytes;
        at += blockBytes;
    }
}

struct DecoderTables {
    std::array<Fse::DecoderEntry, literalStates> literal;
    std::array<Fse::DecoderEntry, lStates> l;
    std::array<Fse::DecoderEntry, mStates> m;
    std::array<Fse::DecoderEntry, dStates> d;
};

template <size_t N>
uint32_t decodeValue(uint16_t& state, std::span<const Fse::DecoderEntry> table,
                     const ValueClass<N>& values, Fse::BackwardBitReader& in) {
    const uint8_t symbol = Fse::decodeSymbol(state, table, in);
    return values.base[symbol] + in.pull(values.extraBits[symbol]);
}

class StreamDecoder {
public:
    // `outputBytes` is what the headers declare: the output is made that size once.
    StreamDecoder(std::span<const uint8_t> input, size_t outputBytes)
        : input_(input), output_(outputBytes, outputBytes) {}

    std::optional<std::vector<uint8_t>> run() {
        while (true) {
            const std::span<const uint8_t> rest = input_.subspan(at_);
            if (rest.size() < magicBytes) {
                return std::nullopt;
            }
            std::optional<size_t> used;
            switch (load32(rest.data())) {
            case endOfStreamMagic:
                return output_.release();
            case rawBlockMagic:
                used = rawBlock(rest);
                break;
            case lzvnBlockMagic:
                used = lzvnBlock(rest);
                break;
            case lzfseV1BlockMagic:
                used = lzfseBlock(rest, readBlockHeaderV1(rest));
                break;
            case lzfseV2BlockMagic:
                used = lzfseBlock(rest, readBlockHeaderV2(rest));
                break;
            default:
                return std::nullopt;
            }
            if (!used) {
                return std::nullopt;
            }
            at_ += *used;
        }
    }

private:
    size_t room() const { return output_.room(); }

    // Each block reader takes the input from the block's magic on and gives the bytes the block
    // took, or none when it is malformed.
    std::optional<size_t> rawBlock(std::span<const uint8_t> block) {
        if (block.size() < rawBlockHeaderBytes) {
            return std::nullopt;
        }
        const uint32_t rawBytes = load32(block.data() + magicBytes);
        if (rawBytes > block.size() - rawBlockHeaderBytes || rawBytes > room()) {
            return std::nullopt;
        }
        output_.appendLiterals(block.subspan(rawBlockHeaderBytes, rawBytes));
        return rawBlockHeaderBytes + rawBytes;
    }

    std::optional<size_t> lzvnBlock(std::span<const uint8_t> block) {
        if (block.size() < lzvnBlockHeaderBytes) {
            return std::nullopt;
        }
        const uint32_t rawBytes = load32(block.data() + magicBytes);
        const uint32_t payloadBytes = load32(block.data() + magicBytes + 4);
        if (payloadBytes > block.size() - lzvnBlockHeaderBytes || rawBytes > room() ||
            !Lzvn::decodeBlock(block.subspan(lzvnBlockHeaderBytes, payloadBytes), rawBytes,
                               output_)) {
            return std::nullopt;
        }
        return lzvnBlockHeaderBytes + payloadBytes;
    }

    std::optional<size_t> lzfseBlock(std::span<const uint8_t> block,
                                     const std::optional<StoredBlockHeader>& stored) {
        if (!stored) {
            return std::nullopt;
        }
        const LzfseBlockHeader& header = stored->header;
        const size_t literalEnd = stored->storedBytes + header.literalPayloadBytes;
        const size_t blockBytes = literalEnd + header.lmdPayloadBytes;
        if (blockBytes > block.size() || header.rawBytes > room() || !buildTables(header)) {
            return std::nullopt;
        }
        // The literal stream may be shorter than one load: reading reaches back into the
        // header then, never before the block.
        if (!decodeLiterals(header, block.first(literalEnd)) ||
            !decodeTriples(header, block.subspan(literalEnd, header.lmdPayloadBytes))) {
            return std::nullopt;
        }
        return blockBytes;
    }

    bool buildTables(const LzfseBlockHeader& header) {
        return Fse::buildDecoderTable(header.literalFrequencies, tables_.literal) &&
               Fse::buildDecoderTable(header.lFrequencies, tables_.l) &&
               Fse::buildDecoderTable(header.mFrequencies, tables_.m) &&
               Fse::buildDecoderTable(header.dFrequencies, tables_.d);
    }

    bool decodeLiterals(const LzfseBlockHeader& header, std::span<const uint8_t> region) {
        auto in = Fse::BackwardBitReader::open(region, header.literalFinalBits);
        if (!in) {
            return false;
        }
        const size_t padded =
            (header.literalCount + literalStreams - 1) / literalStreams * literalStreams;
        literals_.resize(padded);
        std::array<uint16_t, literalStreams> states = header.literalStates;
        for (size_t i = 0; i < padded; i += literalStreams) {
            if (!in->refill()) {
                return false;
            }
            for (size_t stream = 0; stream < literalStreams; ++stream) {
                literals_[i + stream] = Fse::decodeSymbol(states[stream], tables_.literal, *in);
            }
        }
        literals_.resize(header.literalCount);
        return !in->failed();
    }

    bool decodeTriples(const LzfseBlockHeader& header, std::span<const uint8_t> region) {
        auto in = Fse::BackwardBitReader::open(region, header.lmdFinalBits);
        if (!in) {
            return false;
        }
        const size_t blockEnd = output_.size() + header.rawBytes;
        uint16_t lState = header.lState;
        uint16_t mState = header.mState;
        uint16_t dState = header.dState;
        size_t distance = 0; // none yet in this block
        size_t nextLiteral = 0;
        for (uint32_t i = 0; i < header.matchCount; ++i) {
            // One refill covers a triple: at most 14 + 17 + 23 bits.
            if (!in->refill()) {
                return false;
            }
            const uint32_t literal = decodeValue(lState, tables_.l, lValues, *in);
            const uint32_t match = decodeValue(mState, tables_.m, mValues, *in);
            const uint32_t newDistance = decodeValue(dState, tables_.d, dValues, *in);
            distance = newDistance != 0 ? newDistance : distance;
            // The distance is checked even without a match, as other decoders do.
            if (distance == 0 || literal > literals_.size() - nextLiteral ||
                size_t{literal} + match > blockEnd - output_.size() ||
                distance > output_.size() + literal) {
                return false;
            }
            output_.appendLiterals(std::span(literals_).subspan(nextLiteral, literal));
            nextLiteral += literal;
            if (match > 0) {
                output_.appendMatch(distance, match);
            }
        }
        return !in->failed() && output_.size() == blockEnd;
    }

    std::span<const uint8_t> input_;
    size_t at_ = 0;
    DecodedBytes output_;
    std::vector<uint8_t> literals_; // the current block's
    DecoderTables tables_;
};

} // namespace

std::optional<std::vector<uint8_t>> decode(std::span<const uint8_t> input, size_t maxOutputBytes) {
    const std::optional<size_t> declared = declaredBytes(input);
    if (!declared || *declared > maxOutputBytes) {
        return std::nullopt;
    }
    // The tables are a few kilobytes: on the heap, not the stack.
    auto decoder = std::make_unique<StreamDecoder>(input, *declared);
    return decoder->run();
}

} // namespace dorvik::Lzfse
