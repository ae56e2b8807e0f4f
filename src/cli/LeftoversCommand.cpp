// dorvik-cli leftovers: data in ~/Library named after applications that are no longer installed,
// found by the same search as the App Leftovers page, against the bundles of the application
// roots.

#include "cli/Commands.h"
#include "cli/LeftoversReport.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace dorvik::cli {

int runLeftovers(Arguments& arguments) {
    const bool json = takeJsonOption(arguments);
    const std::vector<Leftover> leftovers =
        LeftoverSearch::search(LeftoverSearch::bundleIdentifiersInRoots());
    if (json) {
        printJson(std::cout, leftoversJson(leftovers));
    } else {
        printLeftovers(std::cout, leftovers);
    }
    return 0;
}

} // namespace dorvik::cli
