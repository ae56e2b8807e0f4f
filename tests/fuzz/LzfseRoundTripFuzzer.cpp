// Arbitrary bytes through the LZFSE encoder and back: the stream must decode to exactly the
// input, within an output limit of the input's size.

#include "lzfse/Lzfse.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace dorvik::platform;
    const auto decoded = Lzfse::decode(Lzfse::encode({data, size}), size);
    if (!decoded || decoded->size() != size ||
        (size > 0 && !std::equal(decoded->begin(), decoded->end(), data))) {
        __builtin_trap();
    }
    return 0;
}
