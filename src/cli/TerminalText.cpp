#include "cli/TerminalText.h"

#include "platform/JsonCoding.h"
#include "scanning/ScanPaths.h"

#include <algorithm>
#include <cstdio>

namespace dorvik::cli {

namespace {

bool isControl(unsigned char byte) {
    return byte < 0x20 || byte == 0x7F;
}

// The $'…' form of one byte that cannot stand in single quotes.
std::string escapedByte(unsigned char byte) {
    switch (byte) {
    case '\a':
        return "\\a";
    case '\b':
        return "\\b";
    case '\t':
        return "\\t";
    case '\n':
        return "\\n";
    case '\v':
        return "\\v";
    case '\f':
        return "\\f";
    case '\r':
        return "\\r";
    default:
        break;
    }
    char octal[8];
    std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned>(byte));
    return octal;
}

} // namespace

std::string quotedForTerminal(std::string_view text) {
    // The escaped path form marks exactly the bytes that are no UTF-8 with a NUL.
    const std::string marked = platform::JsonCoding::escapedPath(text);
    const bool plain =
        marked.size() == text.size() && std::none_of(text.begin(), text.end(), [](char byte) {
            return isControl(static_cast<unsigned char>(byte));
        });
    if (plain) {
        return std::string(text);
    }
    std::string quoted;
    bool inQuotes = false;
    const auto closeQuotes = [&] {
        if (inQuotes) {
            quoted += '\'';
            inQuotes = false;
        }
    };
    for (size_t index = 0; index < marked.size(); ++index) {
        const auto byte = static_cast<unsigned char>(marked[index]);
        if (byte == 0) {
            closeQuotes();
            const std::string hex = marked.substr(index + 1, 2);
            quoted +=
                "$'" + escapedByte(static_cast<unsigned char>(std::stoi(hex, nullptr, 16))) + "'";
            index += 2;
        } else if (isControl(byte)) {
            closeQuotes();
            quoted += "$'" + escapedByte(byte) + "'";
        } else if (byte == '\'') {
            closeQuotes();
            quoted += "\\'";
        } else {
            if (!inQuotes) {
                quoted += '\'';
                inQuotes = true;
            }
            quoted += static_cast<char>(byte);
        }
    }
    closeQuotes();
    return quoted;
}

std::string shownPath(std::string_view path) {
    return quotedForTerminal(displayPath(path));
}

} // namespace dorvik::cli
