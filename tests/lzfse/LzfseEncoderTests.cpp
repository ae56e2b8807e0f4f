#include "LzfseTestData.h"
#include "lzfse/Lzfse.h"

#include <gtest/gtest.h>

#include <random>

namespace dorvik {
namespace {

std::vector<uint8_t> repeated(std::vector<uint8_t> unit, size_t times) {
    std::vector<uint8_t> out;
    for (size_t i = 0; i < times; ++i) {
        out.insert(out.end(), unit.begin(), unit.end());
    }
    return out;
}

// Random bytes from a few letters: compressible by entropy coding, with few long matches, so
// that blocks fill up with literals.
std::vector<uint8_t> fewLetters(size_t count, uint64_t seed) {
    std::mt19937_64 random(seed);
    std::vector<uint8_t> bytes(count);
    for (uint8_t& byte : bytes) {
        byte = static_cast<uint8_t>('a' + random() % 12);
    }
    return bytes;
}

TEST(LzfseEncoder, RoundTrips) {
    const auto text3k = test::readLzfseTestFile("text-3k.bin");
    const auto text70k = test::readLzfseTestFile("text-70k.bin");
    const struct {
        const char* what;
        std::vector<uint8_t> input;
        const char* firstBlock; // nullptr: any
    } cases[] = {
        {"empty", {}, "bvx$"},
        {"one byte", {42}, "bvx-"},
        {"eight bytes", {1, 2, 3, 4, 1, 2, 3, 4}, nullptr},
        {"small text", text3k, "bvxn"},
        {"text", text70k, "bvx2"},
        {"random, small", test::randomBytes(100, 1), "bvx-"},
        {"random", test::randomBytes(1 << 20, 2), "bvx-"},
        {"zeros below the LZVN limit", std::vector<uint8_t>(4095, 0), "bvxn"},
        {"zeros at the LZVN limit", std::vector<uint8_t>(4096, 0), "bvx2"},
        {"zeros above the LZVN limit", std::vector<uint8_t>(4097, 0), "bvx2"},
        // More triples than one block holds: the match continues in the next block, where the
        // distance must be stated again.
        {"30 MB of zeros", std::vector<uint8_t>(30 << 20, 0), "bvx2"},
        {"literals just under a block", fewLetters(39999, 3), "bvx2"},
        {"literals filling a block", fewLetters(40000, 4), "bvx2"},
        {"literals just over a block", fewLetters(40001, 5), "bvx2"},
        {"literals over several blocks", fewLetters(250000, 6), "bvx2"},
        {"records, many blocks", test::recordLikeBytes(5 << 20, 7), "bvx2"},
        {"matches at the longest distance", repeated(test::randomBytes(200000, 8), 3), nullptr},
        {"repeats beyond the longest distance", repeated(test::randomBytes(300000, 9), 2), nullptr},
        {"short period", repeated({1, 2, 3}, 100000), "bvx2"},
    };
    for (const auto& c : cases) {
        const auto encoded = Lzfse::encode(c.input);
        const auto magics = test::blockMagics(encoded);
        ASSERT_FALSE(magics.empty()) << c.what;
        EXPECT_EQ(magics.back(), "bvx$") << c.what;
        if (c.firstBlock != nullptr) {
            EXPECT_EQ(magics.front(), c.firstBlock) << c.what;
        }
        const auto decoded = Lzfse::decode(encoded, c.input.size());
        ASSERT_TRUE(decoded) << c.what;
        EXPECT_TRUE(*decoded == c.input) << c.what;
    }
}

TEST(LzfseEncoder, CompressesAboutAsWellAsTheReferenceEncoder) {
    const struct {
        const char* stream;
        double allowedRatio; // ours / the reference's
    } cases[] = {
        {"text-70k.lzfse", 1.10},
        {"records-2m.lzfse", 1.10},
        {"zeros-1m.lzfse", 1.10},
        {"random-64k.lzfse", 1.01},
    };
    for (const auto& c : cases) {
        const auto reference = test::readLzfseTestFile(c.stream);
        const auto original = Lzfse::decode(reference, size_t{64} << 20);
        ASSERT_TRUE(original) << c.stream;
        const auto ours = Lzfse::encode(*original);
        EXPECT_LE(static_cast<double>(ours.size()),
                  c.allowedRatio * static_cast<double>(reference.size()))
            << c.stream << ": ours " << ours.size() << ", reference " << reference.size();
    }
}

TEST(LzfseEncoder, IncompressibleInputGrowsOnlyByBlockHeaders) {
    const auto input = test::randomBytes(3 << 20, 11);
    const auto encoded = Lzfse::encode(input);
    const auto magics = test::blockMagics(encoded);
    EXPECT_EQ(std::count(magics.begin(), magics.end(), "bvx-"),
              static_cast<ptrdiff_t>(magics.size() - 1));
    EXPECT_LE(encoded.size(), input.size() + 8 * magics.size() + 4);
}

} // namespace
} // namespace dorvik
