#pragma once

// Which applications the Applications page shows: its search text and its two toggles.

#include "apps/InstalledApp.h"

#include <string>
#include <vector>

namespace dorvik {

// An application counts as unused when its last use lies more than this before now: 90 days.
inline constexpr double unusedAfterSeconds = 7'776'000;

struct AppFilter {
    std::string search; // found in the name or, failing that, in the identifier, case aside
    bool hideApple = false;
    bool unusedOnly = false; // "Unused for 3 months"

    bool operator==(const AppFilter&) const = default;
};

// Whether `app` passes every part of the filter at `now` (seconds since 1970). An application
// never known to be used counts as unused since the distant past.
bool keeps(const AppFilter& filter, const InstalledApp& app, double now);

// The applications that pass, in their order.
std::vector<InstalledApp> filtered(const std::vector<InstalledApp>& apps, const AppFilter& filter,
                                   double now);

} // namespace dorvik
