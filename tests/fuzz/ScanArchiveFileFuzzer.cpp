// Arbitrary bytes as the file "last-scan.dvscan", compressed: a stream whose blocks declare more
// than the payload limit must be refused before anything of that size is allocated. The limits
// here are small and fuzz.sh caps every single allocation at a few megabytes, so that an
// allocation made before the check shows as a finding. Whatever reads stays within the limits.

#include "scanning/ScanArchive.h"

#include <cstddef>
#include <cstdint>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace dorvik;
    ScanArchive::Limits limits;
    limits.deepestLevel = 64;
    limits.mostNodes = 2000;
    limits.largestPayload = size_t{1} << 20;
    const auto archived = ScanArchive::decodeArchive(std::span(data, size), limits);
    if (!archived) {
        return 0;
    }
    if (ScanArchive::encodePayload(archived->scan, archived->target).size() >
        limits.largestPayload) {
        __builtin_trap();
    }
    return 0;
}
