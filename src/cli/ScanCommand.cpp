#include "base/Dates.h"
#include "base/PathNames.h"
#include "cli/Commands.h"
#include "cli/ScanReport.h"
#include "cli/ScanSource.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "scanning/ScanArchive.h"
#include "scanning/ScanTarget.h"
#include "scanning/WalkThreads.h"
#include "system/VolumeInfo.h"
#include "trends/TrendStore.h"

#include <nlohmann/json.hpp>

#include <iostream>
#include <set>

namespace dorvik::cli {

namespace {

struct Recording {
    std::string directory;
    std::string root;
    size_t snapshotsOfRoot = 0;
    size_t samples = 0;
};

// Feeds the trends the way the application does at the end of a scan: the scan's snapshot, then
// a sample of the space used on "/".
Recording recordForTrends(const ScanResult& result) {
    const double now = Dates::now();
    TrendStore store;
    const ScanSnapshot snapshot = makeScanSnapshot(result, now);
    store.record(snapshot);
    store.recordSample(volumeInfo("/"), now);
    return {store.directory(), snapshot.root, store.history(snapshot.root).size(),
            store.samples().size()};
}

} // namespace

int runScan(Arguments& arguments) {
    std::optional<ScanTarget> target;
    std::set<std::string> excluded;
    std::optional<std::string> savePath;
    int64_t top = 10;
    bool json = false;
    bool record = false;
    bool storedExclusions = true;
    int threads = machineThreads();
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--home" || word == "--disk") {
            if (target) {
                throw UsageError("give one folder, --home or --disk");
            }
            target = word == "--home" ? ScanTarget::home() : ScanTarget::wholeDisk();
        } else if (word == "--save") {
            savePath = arguments.value(word);
        } else if (word == "--exclude") {
            excluded.insert(canonicalPath(normalisedPath(arguments.value(word))));
        } else if (word == "--no-exclusions") {
            storedExclusions = false;
        } else if (word == "--top") {
            top = arguments.number(word, 0);
        } else if (word == "--json") {
            json = true;
        } else if (word == "--threads") {
            threads = threadsOption(arguments, word);
        } else if (word == "--record") {
            record = true;
        } else if (word.starts_with("-") && word != "-") {
            throw UsageError("unknown option " + word);
        } else {
            if (target) {
                throw UsageError("give one folder, --home or --disk");
            }
            target = ScanTarget::folder(normalisedPath(word));
        }
    }
    if (!target) {
        target = ScanTarget::folder(normalisedPath("."));
    }
    const std::string root = target->rootPath();
    const auto result =
        scanOnTerminal(root, scanExclusions(std::move(excluded), storedExclusions), threads);
    if (!result) {
        return 1;
    }
    if (savePath && !ScanArchive::write(*result, *target, *savePath)) {
        std::cerr << "dorvik-cli: could not write the archive " << *savePath << "\n";
        return 1;
    }
    const std::optional<Recording> recording =
        record ? std::optional(recordForTrends(*result)) : std::nullopt;
    if (json) {
        nlohmann::json report = scanReportJson(*result, static_cast<size_t>(top));
        report["threads"] = threads;
        if (recording) {
            report["recorded"] = {
                {"directory", platform::JsonCoding::escapedPath(recording->directory)},
                {"root", platform::JsonCoding::escapedPath(recording->root)},
                {"snapshotsOfRoot", recording->snapshotsOfRoot},
                {"samples", recording->samples},
            };
        }
        printJson(std::cout, report);
        return 0;
    }
    std::cout << scanReportText(*result, static_cast<size_t>(top));
    if (recording) {
        std::cout << "\nRecorded for trends in " << shownPath(recording->directory) << ": "
                  << recording->snapshotsOfRoot << " of " << shownPath(recording->root) << " kept, "
                  << recording->samples << " space samples in all.\n";
    }
    return 0;
}

} // namespace dorvik::cli
