#include "cli/Commands.h"
#include "cli/ScanReport.h"
#include "cli/ScanSource.h"

namespace dorvik::cli {

int runLoad(Arguments& arguments) {
    std::optional<std::string> path;
    int64_t top = 10;
    bool json = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--top") {
            top = arguments.number(word, 0);
        } else if (word == "--json") {
            json = true;
        } else if (word.starts_with("-") || path) {
            throw UsageError("unexpected " + word);
        } else {
            path = word;
        }
    }
    if (!path) {
        throw UsageError("give the archive to load");
    }
    printScanReport(loadArchivedScan(*path), static_cast<size_t>(top), json);
    return 0;
}

} // namespace dorvik::cli
