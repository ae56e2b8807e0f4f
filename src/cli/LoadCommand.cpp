#include "cli/Commands.h"
#include "cli/ScanReport.h"
#include "platform/FileSystem.h"
#include "scanning/ScanArchive.h"

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
    if (!platform::pathExists(*path)) {
        throw InputError("no such file: " + *path);
    }
    const auto archived = ScanArchive::read(*path);
    if (!archived) {
        throw InputError("not a Dorvik scan archive: " + *path);
    }
    printScanReport(archived->scan, static_cast<size_t>(top), json);
    return 0;
}

} // namespace dorvik::cli
