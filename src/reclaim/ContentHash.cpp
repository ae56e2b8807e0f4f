#include "reclaim/ContentHash.h"

#include "platform/BlockReader.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <array>
#include <memory>
#include <vector>

namespace dorvik::ContentHash {

namespace {

std::string hexadecimal(const unsigned char* bytes, unsigned count) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(count * 2);
    for (unsigned index = 0; index < count; ++index) {
        text += digits[bytes[index] >> 4];
        text += digits[bytes[index] & 0x0f];
    }
    return text;
}

} // namespace

std::optional<std::string> sha256(const std::string& path, int64_t budget) {
    // One block buffer a thread, reused from file to file: most files get only their head read.
    thread_local std::vector<uint8_t> buffer(static_cast<size_t>(blockBytes));
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                          &EVP_MD_CTX_free);
    if (!context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1) {
        return std::nullopt;
    }
    const bool opened =
        platform::readInBlocks(path, budget, buffer, [&](std::span<const uint8_t> block) {
            EVP_DigestUpdate(context.get(), block.data(), block.size());
        });
    if (!opened) {
        return std::nullopt;
    }
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    if (EVP_DigestFinal_ex(context.get(), digest.data(), &length) != 1) {
        return std::nullopt;
    }
    return hexadecimal(digest.data(), length);
}

void releaseThreadState() {
    OPENSSL_thread_stop();
}

} // namespace dorvik::ContentHash
