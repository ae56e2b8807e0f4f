#pragma once

// The commands of dorvik-cli. Each takes the words after its name and returns the exit status.

#include "cli/Arguments.h"

#include <nlohmann/json_fwd.hpp>

#include <iosfwd>
#include <string_view>

namespace dorvik::cli {

struct Command {
    std::string_view name;
    std::string_view usage; // the synopsis after "dorvik-cli"
    int (*run)(Arguments& arguments);
};

int runScan(Arguments& arguments);
int runTrends(Arguments& arguments);
int runLoad(Arguments& arguments);
int runFiles(Arguments& arguments);
int runVerdict(Arguments& arguments);
int runJunk(Arguments& arguments);
int runDev(Arguments& arguments);
int runRemove(Arguments& arguments);
int runClean(Arguments& arguments);
int runHistory(Arguments& arguments);
int runUndo(Arguments& arguments);
int runSystem(Arguments& arguments);
int runDuplicates(Arguments& arguments);
int runLeftovers(Arguments& arguments);
int runApps(Arguments& arguments);
int runUninstall(Arguments& arguments);
int runOverview(Arguments& arguments);
int runLoginItems(Arguments& arguments);
int runCloud(Arguments& arguments);
int runBackground(Arguments& arguments);

// Prints a JSON document the way every command does. Paths go in through
// JsonCoding::escapedPath, so that any byte string reads back; other text that is not UTF-8 has
// its bad bytes replaced.
void printJson(std::ostream& out, const nlohmann::json& document);

} // namespace dorvik::cli
