#pragma once

// LZFSE, the compression format of the scan archive. A stream is a sequence of blocks, each
// starting with a four-byte magic: stored bytes ("bvx-"), LZVN ("bvxn"), LZFSE with a plain
// header ("bvx1") or a packed one ("bvx2"), and the end of the stream ("bvx$"). Matches may
// reach back into earlier blocks.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace dorvik::Lzfse {

// The decoded bytes, or none when the input is malformed or cut short, or would decode to more
// than `maxOutputBytes`. Safe on any input: the block headers' decoded sizes are added up first,
// and a stream that declares more than `maxOutputBytes` is refused before anything is allocated;
// otherwise memory use is what the headers declare plus a small constant. Bytes after the
// end-of-stream block are ignored.
std::optional<std::vector<uint8_t>> decode(std::span<const uint8_t> input, size_t maxOutputBytes);

// A complete stream that decode() turns back into `input`: LZFSE blocks ("bvx2") for most data,
// LZVN for small inputs, stored blocks where compression does not pay.
std::vector<uint8_t> encode(std::span<const uint8_t> input);

} // namespace dorvik::Lzfse
