// Arbitrary bytes as "scans.json" and as "space.json": the readers must never crash, hang or
// allocate without bound. Whatever decodes is written again and must read back the same (dates
// aside, which pass through a change of epoch).

#include "trends/TrendFiles.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace dorvik;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto snapshots = TrendFiles::decodeSnapshots(text)) {
        const auto again = TrendFiles::decodeSnapshots(TrendFiles::encodeSnapshots(*snapshots));
        if (!again || again->size() != snapshots->size()) {
            __builtin_trap();
        }
        for (size_t i = 0; i < snapshots->size(); ++i) {
            const ScanSnapshot& a = (*snapshots)[i];
            const ScanSnapshot& b = (*again)[i];
            if (a.id != b.id || a.root != b.root || a.total != b.total || a.buckets != b.buckets ||
                a.folders != b.folders) {
                __builtin_trap();
            }
        }
    }
    if (const auto samples = TrendFiles::decodeSamples(text)) {
        const auto again = TrendFiles::decodeSamples(TrendFiles::encodeSamples(*samples));
        if (!again || again->size() != samples->size()) {
            __builtin_trap();
        }
    }
    return 0;
}
