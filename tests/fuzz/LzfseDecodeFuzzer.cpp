// Arbitrary bytes into the LZFSE decoder: it must never crash, touch memory out of bounds, hang
// or go past its output limit. Whatever decodes is encoded again and must come back unchanged.

#include "lzfse/Lzfse.h"

#include <cstddef>
#include <cstdint>

namespace {
constexpr size_t outputLimit = size_t{1} << 18;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace dorvik::platform;
    const auto decoded = Lzfse::decode({data, size}, outputLimit);
    if (!decoded) {
        return 0;
    }
    if (decoded->size() > outputLimit) {
        __builtin_trap();
    }
    const auto again = Lzfse::decode(Lzfse::encode(*decoded), decoded->size());
    if (!again || *again != *decoded) {
        __builtin_trap();
    }
    return 0;
}
