#pragma once

#include <cstdint>

namespace dorvik {

// One measurement of the used space of "/".
struct SpaceSample {
    double date = 0; // seconds since 1970
    int64_t used = 0;
    int64_t total = 0;

    bool operator==(const SpaceSample&) const = default;
};

} // namespace dorvik
