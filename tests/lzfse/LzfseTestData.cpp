#include "LzfseTestData.h"

#include "lzfse/LzfseBlockHeader.h"
#include "lzfse/LzfseFormat.h"
#include "platform/FileIO.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <functional>
#include <random>
#include <sstream>

namespace dorvik::test {

namespace {

using namespace LzfseFormat;

const std::string dataFolder = DORVIK_LZFSE_TEST_DATA;

std::string magicText(uint32_t magic) {
    std::string text;
    for (int shift = 0; shift < 32; shift += 8) {
        text.push_back(static_cast<char>(magic >> shift));
    }
    return text;
}

// Calls `visit` with each block's magic and bytes; fails the test on a stream it cannot walk.
void walkBlocks(std::span<const uint8_t> stream,
                const std::function<void(uint32_t, std::span<const uint8_t>)>& visit) {
    size_t at = 0;
    while (at + magicBytes <= stream.size()) {
        const std::span<const uint8_t> rest = stream.subspan(at);
        const uint32_t magic = load32(rest.data());
        size_t blockBytes = 0;
        if (magic == endOfStreamMagic) {
            blockBytes = magicBytes;
        } else if (magic == rawBlockMagic) {
            blockBytes = rawBlockHeaderBytes + load32(rest.data() + 4);
        } else if (magic == lzvnBlockMagic) {
            blockBytes = lzvnBlockHeaderBytes + load32(rest.data() + 8);
        } else {
            const auto stored =
                magic == lzfseV1BlockMagic ? readBlockHeaderV1(rest) : readBlockHeaderV2(rest);
            if (!stored) {
                ADD_FAILURE() << "unreadable block at " << at;
                return;
            }
            blockBytes = stored->storedBytes + stored->header.literalPayloadBytes +
                         stored->header.lmdPayloadBytes;
        }
        visit(magic, rest.first(blockBytes));
        if (magic == endOfStreamMagic) {
            return;
        }
        at += blockBytes;
    }
    ADD_FAILURE() << "no end of stream";
}

} // namespace

std::vector<LzfseVector> lzfseVectors() {
    const auto manifest = readLzfseTestFile("MANIFEST");
    std::istringstream lines(std::string(manifest.begin(), manifest.end()));
    std::vector<LzfseVector> vectors;
    std::string line;
    while (std::getline(lines, line)) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        std::istringstream fields(line);
        LzfseVector vector;
        fields >> vector.name >> vector.decodedBytes >> vector.decodedSha256 >>
            vector.firstBlockMagic;
        vectors.push_back(vector);
    }
    return vectors;
}

std::vector<uint8_t> readLzfseTestFile(const std::string& name) {
    auto bytes = platform::readWholeFile(dataFolder + "/" + name, size_t{1} << 30);
    if (!bytes) {
        ADD_FAILURE() << "cannot read " << name;
        return {};
    }
    return *bytes;
}

std::string sha256Hex(std::span<const uint8_t> bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_sha256(), nullptr) != 1) {
        ADD_FAILURE() << "EVP_Digest failed";
        return {};
    }
    static const char hex[] = "0123456789abcdef";
    std::string text;
    for (unsigned int i = 0; i < length; ++i) {
        text.push_back(hex[digest[i] >> 4]);
        text.push_back(hex[digest[i] & 15]);
    }
    return text;
}

std::vector<uint8_t> withV1Headers(std::span<const uint8_t> stream) {
    std::vector<uint8_t> rewritten;
    walkBlocks(stream, [&rewritten](uint32_t magic, std::span<const uint8_t> block) {
        if (magic != lzfseV2BlockMagic) {
            appendBytes(rewritten, block);
            return;
        }
        const auto stored = readBlockHeaderV2(block);
        appendBlockHeaderV1(stored->header, rewritten);
        appendBytes(rewritten, block.subspan(stored->storedBytes));
    });
    return rewritten;
}

std::vector<std::string> blockMagics(std::span<const uint8_t> stream) {
    std::vector<std::string> magics;
    walkBlocks(stream, [&magics](uint32_t magic, std::span<const uint8_t>) {
        magics.push_back(magicText(magic));
    });
    return magics;
}

std::vector<uint8_t> randomBytes(size_t count, uint64_t seed) {
    std::mt19937_64 random(seed);
    std::vector<uint8_t> bytes(count);
    for (uint8_t& byte : bytes) {
        byte = static_cast<uint8_t>(random());
    }
    return bytes;
}

std::vector<uint8_t> recordLikeBytes(size_t count, uint64_t seed) {
    static const char* const words[] = {"Library",      "Caches",  "com.apple",  "Documents",
                                        "node_modules", "Photos",  "build",      "index",
                                        ".git",         "objects", "pack",       "Downloads",
                                        "Movies",       "cache",   "thumbnails", "data"};
    std::mt19937_64 random(seed);
    std::vector<uint8_t> bytes;
    bytes.reserve(count + 64);
    while (bytes.size() < count) {
        const int parts = 1 + static_cast<int>(random() % 4);
        for (int part = 0; part < parts; ++part) {
            const std::string word = words[random() % std::size(words)];
            bytes.insert(bytes.end(), word.begin(), word.end());
            bytes.push_back('/');
        }
        // A size and a date, little-endian, with the high bytes mostly zero as in real records.
        const uint64_t size = random() % (uint64_t{1} << (8 + random() % 24));
        const uint64_t date = 700000000 + random() % 50000000;
        for (int shift = 0; shift < 64; shift += 8) {
            bytes.push_back(static_cast<uint8_t>(size >> shift));
        }
        for (int shift = 0; shift < 64; shift += 8) {
            bytes.push_back(static_cast<uint8_t>(date >> shift));
        }
    }
    bytes.resize(count);
    return bytes;
}

} // namespace dorvik::test
