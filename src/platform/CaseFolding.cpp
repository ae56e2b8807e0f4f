#include "platform/CaseFolding.h"

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cwctype>
#include <locale.h>

namespace dorvik::platform {

namespace {

// The case mapping of C.UTF-8, which glibc always has, so folding does not depend on the
// locale of the environment.
locale_t utf8Locale() {
    static const locale_t locale = [] {
        locale_t made = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
        return made != static_cast<locale_t>(nullptr)
                   ? made
                   : newlocale(LC_CTYPE_MASK, "C", static_cast<locale_t>(nullptr));
    }();
    return locale;
}

char32_t escapedByte(unsigned char byte) {
    return 0xDC00u + byte;
}

// Decodes one code point at `i`, advancing it; invalid bytes come out one at a time, escaped.
char32_t nextCodePoint(std::string_view text, size_t& i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
        ++i;
        return lead;
    }
    size_t length = 0;
    char32_t value = 0;
    char32_t smallest = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        value = lead & 0x1F;
        smallest = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        value = lead & 0x0F;
        smallest = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        value = lead & 0x07;
        smallest = 0x10000;
    } else {
        ++i;
        return escapedByte(lead);
    }
    if (i + length > text.size()) {
        ++i;
        return escapedByte(lead);
    }
    for (size_t k = 1; k < length; ++k) {
        const auto next = static_cast<unsigned char>(text[i + k]);
        if ((next & 0xC0) != 0x80) {
            ++i;
            return escapedByte(lead);
        }
        value = (value << 6) | (next & 0x3F);
    }
    if (value < smallest || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
        ++i;
        return escapedByte(lead);
    }
    i += length;
    return value;
}

} // namespace

std::u32string foldedCase(std::string_view utf8) {
    std::u32string folded;
    appendFoldedCase(utf8, folded);
    return folded;
}

void appendFoldedCase(std::string_view utf8, std::u32string& folded) {
    folded.reserve(folded.size() + utf8.size());
    const locale_t locale = utf8Locale();
    for (size_t i = 0; i < utf8.size();) {
        const char32_t point = nextCodePoint(utf8, i);
        if (point < 0x80) {
            folded.push_back(point >= U'A' && point <= U'Z' ? point + 32 : point);
        } else if (point >= 0xDC00 && point <= 0xDCFF) {
            folded.push_back(point);
        } else {
            folded.push_back(static_cast<char32_t>(towlower_l(static_cast<wint_t>(point), locale)));
        }
    }
}

bool containsFolded(const std::u32string& folded, const std::u32string& foldedQuery) {
    return std::search(folded.begin(), folded.end(), foldedQuery.begin(), foldedQuery.end()) !=
           folded.end();
}

} // namespace dorvik::platform
