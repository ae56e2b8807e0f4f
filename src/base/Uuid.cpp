#include "base/Uuid.h"

#include <array>
#include <cctype>
#include <cstdint>
#include <random>

namespace dorvik::Uuid {

namespace {

constexpr std::array<size_t, 4> dashPositions = {8, 13, 18, 23};
constexpr size_t textLength = 36;

bool isDashPosition(size_t index) {
    for (size_t dash : dashPositions) {
        if (dash == index) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string make() {
    static thread_local std::mt19937_64 random{[] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }()};
    std::array<uint8_t, 16> bytes{};
    for (size_t i = 0; i < bytes.size(); i += 8) {
        uint64_t word = random();
        for (size_t j = 0; j < 8; ++j) {
            bytes[i + j] = static_cast<uint8_t>(word >> (8 * j));
        }
    }
    bytes[6] = static_cast<uint8_t>((bytes[6] & 0x0F) | 0x40); // version 4
    bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80); // the standard variant
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (uint8_t byte : bytes) {
        if (isDashPosition(text.size())) {
            text += '-';
        }
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

std::optional<std::string> parse(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (isDashPosition(i) ? c != '-' : !std::isxdigit(c)) {
            return std::nullopt;
        }
        result += static_cast<char>(std::toupper(c));
    }
    return result;
}

} // namespace dorvik::Uuid
