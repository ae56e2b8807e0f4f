#pragma once

// Where the chart of used space puts its marks: the span of time it covers, the days it labels
// and the sizes it rules. Plain numbers and words, so that a view only has to scale them.

#include "trends/SpaceChart.h"

#include <cstddef>
#include <string>
#include <vector>

namespace dorvik::SpaceChart {

struct Tick {
    double value = 0; // a moment (seconds since 1970) or a size in bytes
    std::string label;

    bool operator==(const Tick&) const = default;
};

struct Axes {
    double start = 0;        // the first moment drawn
    double end = 1;          // the last, after `start`
    std::vector<Tick> dates; // local midnights, "Mar 5"
    std::vector<Tick> sizes; // round sizes between the bottom and the top of the value axis
};

// From the first point of the history to the end of the projection (or of the history), a day
// either side of a single moment; at most `dateLabels` days labelled, evenly spaced, and about
// four sizes.
Axes axes(const Data& data, size_t dateLabels);

// About `wanted` round steps (1, 2, 2.5 or 5 times a power of ten) from `bottom` to `top`, the
// values inside that range.
std::vector<double> roundSteps(double bottom, double top, int wanted);

} // namespace dorvik::SpaceChart
