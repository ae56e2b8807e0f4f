#include "LzfseTestData.h"
#include "lzfse/Lzfse.h"
#include "lzfse/LzfseBlockHeader.h"
#include "lzfse/LzfseFormat.h"

#include <gtest/gtest.h>

#include <random>

namespace dorvik {
namespace {

using namespace LzfseFormat;
using test::LzfseVector;

constexpr size_t generousLimit = size_t{64} << 20;

std::string decodedSha(std::span<const uint8_t> stream, size_t limit = generousLimit) {
    const auto decoded = Lzfse::decode(stream, limit);
    return decoded ? test::sha256Hex(*decoded) : "none";
}

std::vector<uint8_t> bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

// Streams made by hand, block by block.
std::vector<uint8_t> rawBlock(const std::string& text) {
    std::vector<uint8_t> out;
    append32(out, rawBlockMagic);
    append32(out, static_cast<uint32_t>(text.size()));
    appendBytes(out, bytesOf(text));
    return out;
}

std::vector<uint8_t> lzvnBlock(uint32_t rawBytes, const std::vector<uint8_t>& opcodes) {
    std::vector<uint8_t> out;
    append32(out, lzvnBlockMagic);
    append32(out, rawBytes);
    append32(out, static_cast<uint32_t>(opcodes.size()));
    appendBytes(out, opcodes);
    return out;
}

std::vector<uint8_t> stream(std::initializer_list<std::vector<uint8_t>> blocks) {
    std::vector<uint8_t> out;
    for (const auto& block : blocks) {
        appendBytes(out, block);
    }
    append32(out, endOfStreamMagic);
    return out;
}

const std::vector<uint8_t> endOfStream = {0x06, 0, 0, 0, 0, 0, 0, 0};

std::vector<uint8_t> withEnd(std::vector<uint8_t> opcodes) {
    appendBytes(opcodes, endOfStream);
    return opcodes;
}

TEST(LzfseDecoder, ReproducesEveryReferenceVector) {
    const std::vector<LzfseVector> vectors = test::lzfseVectors();
    ASSERT_EQ(vectors.size(), 7u);
    for (const LzfseVector& vector : vectors) {
        const auto encoded = test::readLzfseTestFile(vector.name);
        ASSERT_FALSE(encoded.empty()) << vector.name;
        EXPECT_EQ(test::blockMagics(encoded).front(), vector.firstBlockMagic) << vector.name;
        const auto decoded = Lzfse::decode(encoded, generousLimit);
        ASSERT_TRUE(decoded) << vector.name;
        EXPECT_EQ(decoded->size(), vector.decodedBytes) << vector.name;
        EXPECT_EQ(test::sha256Hex(*decoded), vector.decodedSha256) << vector.name;
        // The small ones come with their decoded bytes, for a byte-for-byte comparison.
        const std::string stem = vector.name.substr(0, vector.name.find('.'));
        if (stem == "tiny" || stem == "text-3k" || stem == "text-70k") {
            EXPECT_EQ(*decoded, test::readLzfseTestFile(stem + ".bin")) << vector.name;
        }
    }
}

TEST(LzfseDecoder, ReadsPlainV1HeadersLikePackedOnes) {
    for (const char* name :
         {"text-70k.lzfse", "random-64k.lzfse", "zeros-1m.lzfse", "records-2m.lzfse"}) {
        const auto packed = test::readLzfseTestFile(name);
        const auto plain = test::withV1Headers(packed);
        const auto magics = test::blockMagics(plain);
        EXPECT_EQ(std::count(magics.begin(), magics.end(), "bvx2"), 0) << name;
        EXPECT_GE(std::count(magics.begin(), magics.end(), "bvx1"), 1) << name;
        EXPECT_EQ(decodedSha(plain), decodedSha(packed)) << name;
        EXPECT_NE(decodedSha(plain), "none") << name;
    }
}

TEST(LzfseDecoder, ReferenceStreamsSpanSeveralBlocks) {
    const auto magics = test::blockMagics(test::readLzfseTestFile("records-2m.lzfse"));
    EXPECT_GT(magics.size(), 3u);
    EXPECT_EQ(magics.back(), "bvx$");
}

TEST(LzfseDecoder, MixedBlockTypesInOneStream) {
    // A raw block, then LZVN blocks whose matches reach back into the blocks before them.
    const auto mixed = stream({
        rawBlock("abcdefgh"),
        // Match 8 bytes from 8 back (small distance, L 0, M 8), then 2 literals.
        lzvnBlock(10, withEnd({0x28, 0x08, 0xe2, 'X', 'Y'})),
        // Match 4 bytes from 18 back: the raw block's start.
        lzvnBlock(4, withEnd({0x08, 0x12})),
    });
    const auto decoded = Lzfse::decode(mixed, 100);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(std::string(decoded->begin(), decoded->end()), "abcdefghabcdefghXYabcd");

    // The encoder's output for a large input joined after a raw block in the same stream.
    const auto text = test::readLzfseTestFile("text-70k.bin");
    auto joined = rawBlock("prefix");
    auto encoded = Lzfse::encode(text);
    joined.insert(joined.end(), encoded.begin(), encoded.end());
    const auto both = Lzfse::decode(joined, generousLimit);
    ASSERT_TRUE(both);
    EXPECT_EQ(std::string(both->begin(), both->begin() + 6), "prefix");
    EXPECT_TRUE(std::equal(text.begin(), text.end(), both->begin() + 6, both->end()));
}

TEST(LzfseDecoder, LzvnOpcodes) {
    const struct {
        const char* what;
        std::vector<uint8_t> opcodes;
        uint32_t rawBytes;
        const char* decoded; // nullptr: malformed
    } cases[] = {
        {"small literal", withEnd({0xe3, 'a', 'b', 'c'}), 3, "abc"},
        {"large literal", withEnd([] {
             std::vector<uint8_t> ops = {0xe0, 1};
             ops.resize(2 + 17, 'z');
             return ops;
         }()),
         17, "zzzzzzzzzzzzzzzzz"},
        {"literal with small-distance match, overlapping", withEnd({0x40, 0x01, 'a'}), 4, "aaaa"},
        {"medium distance", withEnd({0xe2, 'a', 'b', 0xa0, 0x09, 0x00}), 6, "ababab"},
        {"large distance", withEnd({0xe2, 'a', 'b', 0x07, 0x02, 0x00}), 5, "ababa"},
        {"previous distance", withEnd({0xe2, 'a', 'b', 0x00, 0x02, 0x46, 'c'}), 9, "ababacaca"},
        {"match-only opcodes reuse the distance", withEnd({0xe1, 'q', 0x00, 0x01, 0xf2}), 6,
         "qqqqqq"},
        {"large match", withEnd({0xe1, 'q', 0x00, 0x01, 0xf0, 0x00}), 20, "qqqqqqqqqqqqqqqqqqqq"},
        {"nops are skipped", withEnd({0x0e, 0xe1, 'n', 0x16}), 1, "n"},
        {"distance before the output", withEnd({0xe1, 'a', 0x00, 0x02}), 4, nullptr},
        {"distance zero", withEnd({0xe1, 'a', 0x00, 0x00}), 4, nullptr},
        {"match without any distance yet", withEnd({0xe1, 'a', 0xf3}), 4, nullptr},
        {"undefined opcode", withEnd({0x1e}), 0, nullptr},
        {"undefined opcode 0x70", withEnd({0x70, 0}), 0, nullptr},
        {"undefined opcode 0xd0", withEnd({0xd0, 0}), 0, nullptr},
        {"more output than the block declares", withEnd({0xe3, 'a', 'b', 'c'}), 2, nullptr},
        {"less output than the block declares", withEnd({0xe3, 'a', 'b', 'c'}), 4, nullptr},
        {"literal cut short", {0xe3, 'a'}, 3, nullptr},
        {"no end of stream", {0xe1, 'a'}, 1, nullptr},
        {"bytes after the end of stream", {0xe1, 'a', 0x06, 0, 0, 0, 0, 0, 0, 0, 0}, 1, nullptr},
        {"end of stream cut short", {0xe1, 'a', 0x06, 0, 0}, 1, nullptr},
    };
    for (const auto& c : cases) {
        const auto decoded = Lzfse::decode(stream({lzvnBlock(c.rawBytes, c.opcodes)}), 1000);
        if (c.decoded == nullptr) {
            EXPECT_FALSE(decoded) << c.what;
        } else {
            ASSERT_TRUE(decoded) << c.what;
            EXPECT_EQ(std::string(decoded->begin(), decoded->end()), c.decoded) << c.what;
        }
    }
}

// A valid "bvx2" block, its header open to tampering.
struct HandMadeBlock {
    LzfseBlockHeader header;
    std::vector<uint8_t> payload;

    std::vector<uint8_t> bytes() const {
        std::vector<uint8_t> out;
        appendBlockHeaderV2(header, out);
        appendBytes(out, payload);
        return out;
    }
};

HandMadeBlock encodedBlock() {
    const auto encoded = Lzfse::encode(test::recordLikeBytes(5000, 7));
    const auto stored = readBlockHeaderV2(encoded);
    EXPECT_TRUE(stored);
    HandMadeBlock block;
    block.header = stored->header;
    const size_t payloadBytes = stored->header.literalPayloadBytes + stored->header.lmdPayloadBytes;
    block.payload.assign(encoded.begin() + static_cast<ptrdiff_t>(stored->storedBytes),
                         encoded.begin() +
                             static_cast<ptrdiff_t>(stored->storedBytes + payloadBytes));
    return block;
}

TEST(LzfseDecoder, RejectsMalformedBlockHeaders) {
    const HandMadeBlock valid = encodedBlock();
    ASSERT_TRUE(Lzfse::decode(stream({valid.bytes()}), generousLimit));

    const struct {
        const char* what;
        void (*tamper)(HandMadeBlock&);
    } cases[] = {
        {"too many matches",
         [](HandMadeBlock& b) { b.header.matchCount = maxMatchesPerBlock + 1; }},
        {"too many literals",
         [](HandMadeBlock& b) { b.header.literalCount = maxLiteralsPerBlock + 4; }},
        {"L state out of range", [](HandMadeBlock& b) { b.header.lState = lStates; }},
        {"M state out of range", [](HandMadeBlock& b) { b.header.mState = mStates; }},
        {"D state out of range", [](HandMadeBlock& b) { b.header.dState = dStates; }},
        {"frequencies over the states",
         [](HandMadeBlock& b) { b.header.lFrequencies[0] += lStates; }},
        {"literal frequencies over the states",
         [](HandMadeBlock& b) { b.header.literalFrequencies[0] = literalStates; }},
        {"payload larger than the input",
         [](HandMadeBlock& b) { b.header.lmdPayloadBytes += 100000; }},
        {"payload cut short", [](HandMadeBlock& b) { b.payload.resize(b.payload.size() - 1); }},
        {"raw size larger than decoded", [](HandMadeBlock& b) { b.header.rawBytes += 1; }},
        {"raw size smaller than decoded", [](HandMadeBlock& b) { b.header.rawBytes -= 1; }},
        {"more matches than the stream holds",
         [](HandMadeBlock& b) { b.header.matchCount += 1000; }},
        {"fewer literals than the triples use",
         [](HandMadeBlock& b) { b.header.literalCount /= 2; }},
        {"no frequency tables at all",
         [](HandMadeBlock& b) {
             b.header.lFrequencies = {};
             b.header.mFrequencies = {};
             b.header.dFrequencies = {};
             b.header.literalFrequencies = {};
         }},
        {"nonzero unused bits in the literal stream",
         [](HandMadeBlock& b) {
             b.header.literalFinalBits = -7;
             b.payload[b.header.literalPayloadBytes - 1] |= 0x80;
         }},
    };
    for (const auto& c : cases) {
        HandMadeBlock block = valid;
        c.tamper(block);
        EXPECT_FALSE(Lzfse::decode(stream({block.bytes()}), generousLimit)) << c.what;
    }
}

TEST(LzfseDecoder, RejectsMalformedStreams) {
    std::vector<uint8_t> headerTooShort;
    append32(headerTooShort, lzfseV2BlockMagic);
    append32(headerTooShort, 0);
    for (int i = 0; i < 3; ++i) {
        append64(headerTooShort, i == 2 ? 16 : 0); // header size 16, below the fixed part
    }
    const struct {
        const char* what;
        std::vector<uint8_t> bytes;
    } cases[] = {
        {"empty input", {}},
        {"unknown magic", bytesOf("bvx?")},
        {"magic cut short", bytesOf("bvx")},
        {"no end of stream", rawBlock("abc")},
        {"raw block longer than the input",
         [] {
             auto block = rawBlock("abc");
             block[4] = 4;
             return block;
         }()},
        {"raw block header cut short", bytesOf("bvx-\x01")},
        {"LZVN payload longer than the input",
         [] {
             auto block = lzvnBlock(1, withEnd({0xe1, 'a'}));
             block[8] = 100;
             return block;
         }()},
        {"packed header shorter than its fixed part", stream({headerTooShort})},
        {"plain header cut short", stream({bytesOf("bvx1\x01")})},
    };
    for (const auto& c : cases) {
        EXPECT_FALSE(Lzfse::decode(c.bytes, generousLimit)) << c.what;
    }
    // After the end of the stream nothing is read.
    auto trailing = stream({rawBlock("abc")});
    appendBytes(trailing, bytesOf("garbage"));
    EXPECT_EQ(Lzfse::decode(trailing, 10), bytesOf("abc"));
}

TEST(LzfseDecoder, HonoursTheOutputLimit) {
    const auto text = test::readLzfseTestFile("text-70k.bin");
    const struct {
        const char* what;
        std::vector<uint8_t> stream;
        size_t decodedBytes;
    } cases[] = {
        {"raw", test::readLzfseTestFile("tiny.lzfse"), 5},
        {"LZVN", test::readLzfseTestFile("text-3k.lzfse"), 3000},
        {"LZFSE", test::readLzfseTestFile("text-70k.lzfse"), 63233},
        {"LZFSE, long matches", test::readLzfseTestFile("zeros-1m.lzfse"), 1 << 20},
        {"several blocks", test::readLzfseTestFile("records-2m.lzfse"), 3118018},
        {"our own encoder", Lzfse::encode(text), text.size()},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(Lzfse::decode(c.stream, c.decodedBytes)) << c.what;
        EXPECT_FALSE(Lzfse::decode(c.stream, c.decodedBytes - 1)) << c.what;
        EXPECT_FALSE(Lzfse::decode(c.stream, 0)) << c.what;
    }
    EXPECT_TRUE(Lzfse::decode(test::readLzfseTestFile("empty.lzfse"), 0));
}

TEST(LzfseDecoder, EveryTruncationIsRejected) {
    for (const LzfseVector& vector : test::lzfseVectors()) {
        const auto encoded = test::readLzfseTestFile(vector.name);
        // Every cut of the small streams; some twenty-five spread over the large ones, and every
        // cut near the start and the end, where headers and the end of stream lie.
        const size_t stride = encoded.size() < 4096 ? 1 : encoded.size() / 25;
        for (size_t length = 0; length < encoded.size(); ++length) {
            const bool near = length < 64 || encoded.size() - length <= 8;
            if (!near && length % stride != 0) {
                continue;
            }
            EXPECT_FALSE(Lzfse::decode(std::span(encoded).first(length), generousLimit))
                << vector.name << " cut to " << length;
        }
    }
}

TEST(LzfseDecoder, CorruptedBytesGiveNoneOrBoundedOutput) {
    std::mt19937_64 random(42);
    size_t rejected = 0;
    size_t decodedAnyway = 0;
    for (const char* name :
         {"tiny.lzfse", "text-3k.lzfse", "text-70k.lzfse", "random-64k.lzfse", "zeros-1m.lzfse"}) {
        const auto original = test::readLzfseTestFile(name);
        const size_t limit = 2 << 20;
        for (int trial = 0; trial < 300; ++trial) {
            auto corrupted = original;
            const int flips = 1 + static_cast<int>(random() % 4);
            for (int flip = 0; flip < flips; ++flip) {
                corrupted[random() % corrupted.size()] ^= static_cast<uint8_t>(1 + random() % 255);
            }
            const auto decoded = Lzfse::decode(corrupted, limit);
            if (decoded) {
                EXPECT_LE(decoded->size(), limit);
                ++decodedAnyway; // a flipped literal bit, say, still decodes
            } else {
                ++rejected;
            }
        }
    }
    // Most damage to headers, opcodes and bit streams is caught.
    EXPECT_GT(rejected, decodedAnyway / 4);
}

} // namespace
} // namespace dorvik
