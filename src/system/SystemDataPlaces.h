#pragma once

// The places that make up what the system keeps for itself beside the user's files: the eight a
// Mac lumps together as "System Data", then the places a Linux system keeps, in the same form.
// A place that does not exist on this computer measures nothing and is not shown.

#include "catalogue/Risk.h"

#include <span>
#include <string_view>

namespace dorvik {

struct SystemDataPlace {
    std::string_view id;
    std::string_view path;
    std::string_view title;
    std::string_view explanation;
    std::string_view advice; // what the user can do, naming the command to run where there is one
    Risk risk;
    std::string_view symbol;
};

// The eight places of a Mac, in their order.
std::span<const SystemDataPlace> macSystemDataPlaces();

// The places of a Linux system. Their risk is what the safety rules say of their path.
std::span<const SystemDataPlace> linuxSystemDataPlaces();

// The Mac's places, then Linux's.
std::span<const SystemDataPlace> systemDataPlaces();

} // namespace dorvik
