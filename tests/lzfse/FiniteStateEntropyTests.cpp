#include "lzfse/FiniteStateEntropy.h"
#include "lzfse/LzfseBlockHeader.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace dorvik {
namespace {

TEST(FiniteStateEntropy, NormalizedFrequenciesFillTheStates) {
    std::vector<uint32_t> oneHugeManySmall(256, 1);
    oneHugeManySmall[7] = 4000000;
    std::vector<uint32_t> skewed(64, 0);
    for (size_t i = 0; i < skewed.size(); i += 3) {
        skewed[i] = static_cast<uint32_t>(1 + i * i * i);
    }
    const struct {
        const char* what;
        std::vector<uint32_t> counts;
        uint32_t states;
    } cases[] = {
        {"one symbol", {0, 0, 9, 0}, 64},
        {"even", std::vector<uint32_t>(256, 5), 1024},
        {"one huge, many rare", oneHugeManySmall, 1024},
        {"as many symbols as states", std::vector<uint32_t>(64, 1), 64},
        {"skewed", skewed, 256},
        {"nothing", std::vector<uint32_t>(20, 0), 64},
    };
    for (const auto& c : cases) {
        const auto frequencies = Fse::normalize(c.counts, c.states);
        ASSERT_EQ(frequencies.size(), c.counts.size()) << c.what;
        const uint32_t total = std::accumulate(frequencies.begin(), frequencies.end(), 0u);
        const bool anything =
            std::any_of(c.counts.begin(), c.counts.end(), [](uint32_t count) { return count > 0; });
        EXPECT_EQ(total, anything ? c.states : 0) << c.what;
        for (size_t symbol = 0; symbol < c.counts.size(); ++symbol) {
            EXPECT_EQ(frequencies[symbol] > 0, c.counts[symbol] > 0) << c.what << " " << symbol;
        }
    }
}

TEST(FiniteStateEntropy, DecodesWhatItEncodes) {
    std::mt19937_64 random(5);
    const struct {
        const char* what;
        uint32_t states;
        size_t symbols;
        int skew; // symbol = min of this many draws: larger is more skewed
    } cases[] = {
        {"literals, flat", 1024, 256, 1}, {"literals, skewed", 1024, 256, 4},
        {"distances", 256, 64, 3},        {"lengths", 64, 20, 2},
        {"one symbol", 64, 1, 1},
    };
    for (const auto& c : cases) {
        std::vector<uint8_t> message(5000);
        std::vector<uint32_t> counts(c.symbols, 0);
        for (uint8_t& symbol : message) {
            uint64_t draw = c.symbols;
            for (int i = 0; i < c.skew; ++i) {
                draw = std::min<uint64_t>(draw, random() % c.symbols);
            }
            symbol = static_cast<uint8_t>(draw);
            ++counts[symbol];
        }
        const auto frequencies = Fse::normalize(counts, c.states);
        const auto encoderTable = Fse::buildEncoderTable(frequencies, c.states);
        std::vector<uint8_t> stream(8, 0); // room for the reader's first load
        Fse::BitWriter out;
        uint16_t state = 0;
        for (size_t i = message.size(); i-- > 0;) {
            Fse::encodeSymbol(state, encoderTable[message[i]], out);
            out.flush(stream);
        }
        const int finalBits = out.finish(stream);

        std::vector<Fse::DecoderEntry> decoderTable(c.states);
        ASSERT_TRUE(Fse::buildDecoderTable(frequencies, decoderTable)) << c.what;
        auto in = Fse::BackwardBitReader::open(stream, finalBits);
        ASSERT_TRUE(in) << c.what;
        std::vector<uint8_t> decoded;
        for (size_t i = 0; i < message.size(); ++i) {
            ASSERT_TRUE(in->refill()) << c.what;
            decoded.push_back(Fse::decodeSymbol(state, decoderTable, *in));
        }
        EXPECT_FALSE(in->failed()) << c.what;
        EXPECT_TRUE(decoded == message) << c.what;
    }
}

TEST(FiniteStateEntropy, RejectsFrequenciesOverTheStates) {
    std::vector<Fse::DecoderEntry> table(64);
    const std::vector<uint16_t> over = {60, 5};
    EXPECT_FALSE(Fse::buildDecoderTable(over, table));
    const std::vector<uint16_t> under = {30, 5}; // fewer is tolerated: the rest decode as 0
    EXPECT_TRUE(Fse::buildDecoderTable(under, table));
    EXPECT_EQ(table[40].symbol, 0);
    EXPECT_EQ(table[40].bits, 0);
}

TEST(LzfseBlockHeader, BothStoredFormsKeepEveryField) {
    LzfseBlockHeader header;
    header.rawBytes = 123456;
    header.literalCount = 39996;
    header.matchCount = 9999;
    header.literalPayloadBytes = 45000;
    header.lmdPayloadBytes = 60001;
    header.literalFinalBits = -3;
    header.literalStates = {1, 500, 1023, 7};
    header.lmdFinalBits = -7;
    header.lState = 63;
    header.mState = 1;
    header.dState = 255;
    header.lFrequencies[0] = 60;
    header.lFrequencies[19] = 4;
    header.mFrequencies[3] = 64;
    for (size_t i = 0; i < header.dFrequencies.size(); ++i) {
        header.dFrequencies[i] = 4;
    }
    header.literalFrequencies[0] = 977; // the longest code, 14 bits
    header.literalFrequencies[255] = 24;
    header.literalFrequencies[100] = 23;

    const auto sameFields = [&header](const LzfseBlockHeader& read) {
        return read.rawBytes == header.rawBytes && read.literalCount == header.literalCount &&
               read.matchCount == header.matchCount &&
               read.literalPayloadBytes == header.literalPayloadBytes &&
               read.lmdPayloadBytes == header.lmdPayloadBytes &&
               read.literalFinalBits == header.literalFinalBits &&
               read.literalStates == header.literalStates &&
               read.lmdFinalBits == header.lmdFinalBits && read.lState == header.lState &&
               read.mState == header.mState && read.dState == header.dState &&
               read.lFrequencies == header.lFrequencies &&
               read.mFrequencies == header.mFrequencies &&
               read.dFrequencies == header.dFrequencies &&
               read.literalFrequencies == header.literalFrequencies;
    };
    std::vector<uint8_t> plain;
    appendBlockHeaderV1(header, plain);
    EXPECT_EQ(plain.size(), 772u);
    const auto readPlain = readBlockHeaderV1(plain);
    ASSERT_TRUE(readPlain);
    EXPECT_EQ(readPlain->storedBytes, plain.size());
    EXPECT_TRUE(sameFields(readPlain->header));

    std::vector<uint8_t> packed;
    appendBlockHeaderV2(header, packed);
    const auto readPacked = readBlockHeaderV2(packed);
    ASSERT_TRUE(readPacked);
    EXPECT_EQ(readPacked->storedBytes, packed.size());
    EXPECT_TRUE(sameFields(readPacked->header));
    // 32 fixed bytes, then the codes: 2 bits for a 0, 5 for 4 to 7, 8 for 8 to 23, 14 above.
    const size_t codeBits = (18 * 2 + 14 + 5) + (19 * 2 + 14) + 64 * 5 + (253 * 2 + 14 + 14 + 8);
    EXPECT_EQ(packed.size(), 32 + (codeBits + 7) / 8);
}

} // namespace
} // namespace dorvik
