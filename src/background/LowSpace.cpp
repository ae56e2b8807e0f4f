#include "background/LowSpace.h"

namespace dorvik::LowSpace {

Decision check(std::optional<int64_t> free, int thresholdGB, bool notified) {
    if (!free || thresholdGB < 1) {
        return {notified, false};
    }
    const int64_t threshold = int64_t{thresholdGB} * bytesPerGB;
    if (*free >= threshold) {
        // Between the threshold and the margin above it the flag keeps its value.
        return {*free > threshold + resetMargin ? false : notified, false};
    }
    return {true, !notified};
}

bool isLow(int64_t free, int thresholdGB) {
    return thresholdGB >= 1 && free < int64_t{thresholdGB} * bytesPerGB;
}

} // namespace dorvik::LowSpace
