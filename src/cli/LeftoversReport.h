#pragma once

// What dorvik-cli leftovers prints: a line a leftover, or one JSON document.

#include "apps/LeftoverSearch.h"

#include <nlohmann/json_fwd.hpp>

#include <iosfwd>
#include <vector>

namespace dorvik::cli {

void printLeftovers(std::ostream& out, const std::vector<Leftover>& leftovers);

// {"leftovers": [{path, identifier, location, size, modified}]}, dates in seconds since 1970.
nlohmann::json leftoversJson(const std::vector<Leftover>& leftovers);

} // namespace dorvik::cli
