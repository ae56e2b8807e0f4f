// dorvik-cli system: what the system keeps for itself, place by place with what to do about
// each, and the local snapshots on the disk.

#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "system/LocalSnapshots.h"
#include "system/SystemData.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>
#include <numeric>

namespace dorvik::cli {

namespace {

struct SystemReport {
    std::vector<SystemDataPart> parts;
    std::vector<LocalSnapshot> snapshots;

    int64_t measured() const {
        return std::accumulate(
            parts.begin(), parts.end(), int64_t{0},
            [](int64_t sum, const SystemDataPart& part) { return sum + part.size; });
    }
};

void printText(const SystemReport& report) {
    std::cout << "Measured here: " << TextForms::size(report.measured()) << "\n";
    for (const SystemDataPart& part : report.parts) {
        std::cout << "\n"
                  << std::setw(10) << TextForms::size(part.size) << "  "
                  << Wording::shown(part.title) << " ("
                  << TextForms::percent(static_cast<double>(part.size),
                                        static_cast<double>(report.measured()))
                  << ", " << info(part.risk).label << ")";
        if (part.path) {
            std::cout << "  " << shownPath(*part.path);
        }
        std::cout << "\n            " << Wording::shown(part.explanation) << "\n            "
                  << Wording::shown(part.advice) << "\n";
    }
    std::cout << "\n" << Wording::shown("Time Machine local snapshots") << "\n";
    if (report.snapshots.empty()) {
        std::cout << "  No local snapshots on this disk.\n";
    }
    for (const LocalSnapshot& snapshot : report.snapshots) {
        std::cout << "  " << snapshotTitle(snapshot) << "\n";
    }
}

nlohmann::json reportJson(const SystemReport& report) {
    nlohmann::json parts = nlohmann::json::array();
    for (const SystemDataPart& part : report.parts) {
        parts.push_back({
            {"id", part.id},
            {"title", Wording::shown(part.title)},
            {"size", part.size},
            {"path", part.path ? nlohmann::json(platform::JsonCoding::escapedPath(*part.path))
                               : nlohmann::json()},
            {"risk", info(part.risk).caseName},
            {"explanation", Wording::shown(part.explanation)},
            {"advice", Wording::shown(part.advice)},
        });
    }
    nlohmann::json snapshots = nlohmann::json::array();
    for (const LocalSnapshot& snapshot : report.snapshots) {
        snapshots.push_back({
            {"name", snapshot.name},
            {"keeper", snapshot.keeper == SnapshotKeeper::snapper ? "snapper" : "tmutil"},
            {"date",
             snapshot.date ? nlohmann::json(TextForms::iso8601(*snapshot.date)) : nlohmann::json()},
        });
    }
    return {{"measured", report.measured()},
            {"parts", std::move(parts)},
            {"snapshots", std::move(snapshots)}};
}

} // namespace

int runSystem(Arguments& arguments) {
    // --root measures a tree laid out like a computer's root instead of this one's, tools
    // included.
    std::string root;
    bool json = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--root") {
            root = normalisedPath(arguments.value(word));
        } else if (word == "--json") {
            json = true;
        } else {
            throw UsageError("unknown option " + word);
        }
    }
    SystemDataOptions options;
    options.filesystemRoot = root;
    SnapshotTools tools;
    tools.tmutil = root + tools.tmutil;
    tools.snapper = root + tools.snapper;
    const SystemReport report{measureSystemData({}, options), listLocalSnapshots(tools)};
    if (json) {
        printJson(std::cout, reportJson(report));
    } else {
        printText(report);
    }
    return 0;
}

} // namespace dorvik::cli
