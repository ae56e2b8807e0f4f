// Arbitrary bytes as "history.json": the reader must never crash, hang or allocate without bound.
// Whatever decodes is written again and must read back as the same entries (dates aside, which
// pass through a change of epoch).

#include "removal/HistoryFile.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace dorvik;
    const auto decoded =
        HistoryFile::decode(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!decoded) {
        return 0;
    }
    const auto again = HistoryFile::decode(HistoryFile::encode(*decoded));
    if (!again || again->size() != decoded->size()) {
        __builtin_trap();
    }
    for (size_t i = 0; i < decoded->size(); ++i) {
        const HistoryEntry& a = (*decoded)[i];
        const HistoryEntry& b = (*again)[i];
        if (a.id != b.id || a.originalPath != b.originalPath || a.trashPath != b.trashPath ||
            a.size != b.size || a.restored != b.restored || a.trashedItem != b.trashedItem) {
            __builtin_trap();
        }
    }
    return 0;
}
