#pragma once

// LZVN, the byte-oriented coder LZFSE uses for small inputs: a sequence of opcodes, each
// carrying a short literal and/or a match, ending with an end-of-stream opcode. No entropy
// coding, so it wins on inputs too small to pay for LZFSE's frequency tables.

#include "lzfse/DecodedBytes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace dorvik::Lzvn {

// Distances reach back at most this far: the largest opcode field is 16 bits.
constexpr uint32_t maxDistance = 65535;

// Opcode constants both directions share.
constexpr uint8_t endOfStreamOpcode = 0x06; // then seven more bytes
constexpr size_t endOfStreamBytes = 8;
constexpr uint8_t largeLiteralOpcode = 0xe0;   // 11100000 LLLLLLLL; 1110LLLL is the small form
constexpr uint8_t largeMatchOpcode = 0xf0;     // 11110000 MMMMMMMM; 1111MMMM is the small form
constexpr uint8_t mediumDistanceOpcode = 0xa0; // 101LLMMM DDDDDDMM DDDDDDDD
constexpr uint32_t minMatch = 3;         // match lengths in opcodes with a distance start here
constexpr uint32_t largeLengthBias = 16; // lengths in the two-byte forms start here

// Decodes one block's opcodes, appending exactly `rawBytes` bytes to `output`. Matches may reach
// back into what `output` held before. False on any malformed opcode, a distance before the
// start of `output`, or a payload that does not end with the end-of-stream opcode at its very
// last byte. The caller checks that `rawBytes` fit in output.room().
bool decodeBlock(std::span<const uint8_t> payload, size_t rawBytes, DecodedBytes& output);

// The opcodes of `input`, end-of-stream included.
std::vector<uint8_t> encodeBlock(std::span<const uint8_t> input);

} // namespace dorvik::Lzvn
