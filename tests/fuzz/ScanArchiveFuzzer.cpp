// Arbitrary bytes as the payload of "last-scan.dvscan": the reader must never crash, hang or
// allocate without bound. Whatever reads is written again and must read back to the same bytes.

#include "scanning/ScanArchive.h"

#include <cstddef>
#include <cstdint>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace dorvik;
    const auto archived = ScanArchive::decodePayload(std::span(data, size));
    if (!archived) {
        return 0;
    }
    const auto payload = ScanArchive::encodePayload(archived->scan, archived->target);
    const auto again = ScanArchive::decodePayload(payload);
    if (!again || ScanArchive::encodePayload(again->scan, again->target) != payload) {
        __builtin_trap();
    }
    return 0;
}
