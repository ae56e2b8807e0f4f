#include "reclaim/ContentHash.h"

#include "platform/BlockReader.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <array>
#include <vector>

namespace dorvik::ContentHash {

namespace {

using Context = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;

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

Context newContext() {
    Context context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1) {
        context.reset();
    }
    return context;
}

// Feeds at most `budget` bytes from `offset` on into the context; the count fed, or none when the
// file cannot be opened.
std::optional<int64_t> feed(EVP_MD_CTX* context, const std::string& path, int64_t budget,
                            int64_t offset) {
    // One block buffer a thread, reused from file to file: most files get only their head read.
    thread_local std::vector<uint8_t> buffer(static_cast<size_t>(blockBytes));
    int64_t fed = 0;
    const bool opened = platform::readInBlocks(
        path, budget, buffer,
        [&](std::span<const uint8_t> block) {
            EVP_DigestUpdate(context, block.data(), block.size());
            fed += static_cast<int64_t>(block.size());
        },
        offset);
    return opened ? std::optional(fed) : std::nullopt;
}

std::optional<std::string> finish(EVP_MD_CTX* context) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    if (EVP_DigestFinal_ex(context, digest.data(), &length) != 1) {
        return std::nullopt;
    }
    return hexadecimal(digest.data(), length);
}

} // namespace

std::optional<std::string> sha256(const std::string& path, int64_t budget) {
    const Context context = newContext();
    if (!context || !feed(context.get(), path, budget, 0)) {
        return std::nullopt;
    }
    return finish(context.get());
}

struct HeadDigest::Running {
    Context context{nullptr, &EVP_MD_CTX_free};
    bool endedInHead = false;
};

HeadDigest::HeadDigest(std::string digest, std::unique_ptr<Running> running)
    : digest_(std::move(digest)), running_(std::move(running)) {}
HeadDigest::HeadDigest(HeadDigest&&) noexcept = default;
HeadDigest& HeadDigest::operator=(HeadDigest&&) noexcept = default;
HeadDigest::~HeadDigest() = default;

std::optional<HeadDigest> HeadDigest::of(const std::string& path) {
    auto running = std::make_unique<Running>();
    running->context = newContext();
    if (!running->context) {
        return std::nullopt;
    }
    const auto fed = feed(running->context.get(), path, headBytes, 0);
    if (!fed) {
        return std::nullopt;
    }
    running->endedInHead = *fed < headBytes;
    // The head's digest comes from a copy; the original goes on with the rest of the file.
    const Context head = newContext();
    if (!head || EVP_MD_CTX_copy_ex(head.get(), running->context.get()) != 1) {
        return std::nullopt;
    }
    auto digest = finish(head.get());
    if (!digest) {
        return std::nullopt;
    }
    return HeadDigest(std::move(*digest), std::move(running));
}

std::optional<std::string> HeadDigest::wholeFileDigest(const std::string& path) {
    if (!running_ || !running_->context) {
        return std::nullopt;
    }
    if (running_->endedInHead) {
        return digest_;
    }
    if (!feed(running_->context.get(), path, wholeFile, headBytes)) {
        return std::nullopt;
    }
    auto whole = finish(running_->context.get());
    running_.reset();
    return whole;
}

void releaseThreadState() {
    OPENSSL_thread_stop();
}

} // namespace dorvik::ContentHash
