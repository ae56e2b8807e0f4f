// Decodes LZVN opcodes. Every opcode is checked against what is left of the payload before its
// fields are read, and every literal and match against what is left of the block's output, so
// no input can make it read or write out of bounds. Each opcode consumes at least one byte, so
// the loop ends.

#include "lzfse/LzfseFormat.h"
#include "lzfse/Lzvn.h"

#include <array>

namespace dorvik::Lzvn {

using namespace LzfseFormat;

namespace {

// What the first byte of an opcode says. L, M and D are literal length, match length and match
// distance; "previous" means the distance of the last match.
enum class Opcode : uint8_t {
    smallDistance,    // LLMMMDDD DDDDDDDD: L 0-3, M 3-10, D up to 1535
    mediumDistance,   // 101LLMMM DDDDDDMM DDDDDDDD: L 0-3, M 3-34, D up to 16383
    largeDistance,    // LLMMM111 DDDDDDDD DDDDDDDD: L 0-3, M 3-10, D up to 65535
    previousDistance, // LLMMM110: L 1-3, M 3-10, previous D
    smallMatch,       // 1111MMMM: M 1-15, previous D
    largeMatch,       // 11110000 MMMMMMMM: M 16-271, previous D
    smallLiteral,     // 1110LLLL: L 1-15
    largeLiteral,     // 11100000 LLLLLLLL: L 16-271
    nop,
    endOfStream, // 00000110 then seven more bytes
    invalid,
};

constexpr Opcode classify(uint8_t byte) {
    if (byte == endOfStreamOpcode) {
        return Opcode::endOfStream;
    }
    if (byte == 0x0e || byte == 0x16) {
        return Opcode::nop;
    }
    if (byte >= largeMatchOpcode) {
        return byte == largeMatchOpcode ? Opcode::largeMatch : Opcode::smallMatch;
    }
    if (byte >= largeLiteralOpcode) {
        return byte == largeLiteralOpcode ? Opcode::largeLiteral : Opcode::smallLiteral;
    }
    if (byte >= mediumDistanceOpcode && byte < 0xc0) {
        return Opcode::mediumDistance;
    }
    if ((byte >= 0x70 && byte < 0x80) || byte >= 0xd0) {
        return Opcode::invalid;
    }
    switch (byte & 7) {
    case 7:
        return Opcode::largeDistance;
    case 6:
        // With no literal this pattern would be a plain match; those bytes are the reserved
        // ones above (end of stream, nops) or undefined.
        return byte < 0x40 ? Opcode::invalid : Opcode::previousDistance;
    default:
        return Opcode::smallDistance;
    }
}

constexpr std::array<Opcode, 256> opcodeTable = [] {
    std::array<Opcode, 256> table{};
    for (size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = classify(static_cast<uint8_t>(byte));
    }
    return table;
}();

constexpr size_t opcodeBytes(Opcode opcode) {
    switch (opcode) {
    case Opcode::smallDistance:
    case Opcode::largeMatch:
    case Opcode::largeLiteral:
        return 2;
    case Opcode::mediumDistance:
    case Opcode::largeDistance:
        return 3;
    case Opcode::endOfStream:
        return endOfStreamBytes;
    default:
        return 1;
    }
}

} // namespace

bool decodeBlock(std::span<const uint8_t> payload, size_t rawBytes, DecodedBytes& output) {
    const size_t end = output.size() + rawBytes;
    size_t distance = 0; // none yet in this block
    size_t at = 0;
    while (at < payload.size()) {
        const uint8_t* op = payload.data() + at;
        const Opcode kind = opcodeTable[op[0]];
        const size_t length = opcodeBytes(kind);
        if (kind == Opcode::invalid || payload.size() - at < length) {
            return false;
        }
        size_t literal = 0;
        size_t match = 0;
        switch (kind) {
        case Opcode::smallDistance:
            literal = op[0] >> 6;
            match = (op[0] >> 3 & 7) + minMatch;
            distance = size_t{op[0] & 7u} << 8 | op[1];
            break;
        case Opcode::mediumDistance: {
            const uint16_t word = load16(op + 1);
            literal = op[0] >> 3 & 3;
            match = ((op[0] & 7u) << 2 | (word & 3u)) + minMatch;
            distance = word >> 2;
            break;
        }
        case Opcode::largeDistance:
            literal = op[0] >> 6;
            match = (op[0] >> 3 & 7) + minMatch;
            distance = load16(op + 1);
            break;
        case Opcode::previousDistance:
            literal = op[0] >> 6;
            match = (op[0] >> 3 & 7) + minMatch;
            break;
        case Opcode::smallMatch:
            match = op[0] & 15;
            break;
        case Opcode::largeMatch:
            match = op[1] + largeLengthBias;
            break;
        case Opcode::smallLiteral:
            literal = op[0] & 15;
            break;
        case Opcode::largeLiteral:
            literal = op[1] + largeLengthBias;
            break;
        case Opcode::nop:
            break;
        case Opcode::endOfStream:
            return at + length == payload.size() && output.size() == end;
        case Opcode::invalid:
            return false;
        }
        at += length;

        if (literal > payload.size() - at || literal > end - output.size()) {
            return false;
        }
        output.appendLiterals(payload.subspan(at, literal));
        at += literal;

        if (match > 0) {
            if (distance == 0 || distance > output.size() || match > end - output.size()) {
                return false;
            }
            output.appendMatch(distance, match);
        }
    }
    return false; // no end-of-stream opcode
}

} // namespace dorvik::Lzvn
