#include "base/Dates.h"
#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cleaning/DeveloperArtifacts.h"
#include "cleaning/Recommendations.h"
#include "cli/Commands.h"
#include "cli/FindJunk.h"
#include "cli/ScanSource.h"
#include "cli/TerminalText.h"
#include "platform/HomeDirectory.h"
#include "platform/JsonCoding.h"
#include "scanning/LargestFolders.h"
#include "system/DiskComposition.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>

namespace dorvik::cli {

namespace {

// What the Overview shows of a scan, computed once for both outputs.
struct OverviewReport {
    DiskComposition composition;
    std::vector<Recommendation> recommendations;
    std::vector<FileNodePtr> largestFolders;
};

OverviewReport makeReport(const ScanResult& scan) {
    RecommendationSources sources;
    sources.scan = &scan;
    sources.junk = findJunk();
    sources.home = platform::homeDirectory();
    sources.now = Dates::now();
    for (const DevItem& item : developerItems(&scan, sources.junk, sources.home)) {
        sources.developerArtifacts += item.size;
    }
    return {diskComposition(scan.bucketTotals, volumeInfo("/")), recommendations(sources),
            largestFolders(scan.root)};
}

std::string segmentName(const CompositionSegment& segment) {
    return Wording::shown(segment.bucket ? info(*segment.bucket).displayName : unreachedTitle);
}

void printText(const OverviewReport& report) {
    std::cout << "Where your space goes\n";
    for (const CompositionSegment& segment : report.composition.segments) {
        std::cout << "  " << std::setw(10) << TextForms::size(segment.size) << "  " << std::setw(6)
                  << TextForms::percent(static_cast<double>(segment.size),
                                        static_cast<double>(report.composition.total))
                  << "  " << segmentName(segment) << "\n";
    }
    std::cout << "\nRecommendations\n";
    for (const Recommendation& row : report.recommendations) {
        std::cout << "  " << std::setw(10) << TextForms::size(row.size) << "  "
                  << Wording::shown(row.title) << "\n"
                  << "              " << Wording::shown(row.detail) << "\n";
    }
    if (report.recommendations.empty()) {
        std::cout << "  Nothing urgent. Nice work!\n";
    }
    std::cout << "\nLargest folders\n";
    for (const FileNodePtr& folder : report.largestFolders) {
        std::cout << "  " << std::setw(10) << TextForms::size(folder->size) << "  "
                  << shownPath(canonicalPath(folder->path())) << "\n";
    }
    if (report.largestFolders.empty()) {
        std::cout << "  None over 200 MB below the top two levels.\n";
    }
}

nlohmann::json reportJson(const OverviewReport& report) {
    nlohmann::json segments = nlohmann::json::array();
    for (const CompositionSegment& segment : report.composition.segments) {
        segments.push_back({
            {"bucket", segment.bucket ? nlohmann::json(info(*segment.bucket).caseName)
                                      : nlohmann::json(nullptr)},
            {"name", segmentName(segment)},
            {"size", segment.size},
        });
    }
    nlohmann::json rows = nlohmann::json::array();
    for (const Recommendation& row : report.recommendations) {
        rows.push_back({{"id", row.id},
                        {"title", Wording::shown(row.title)},
                        {"detail", Wording::shown(row.detail)},
                        {"size", row.size}});
    }
    nlohmann::json folders = nlohmann::json::array();
    for (const FileNodePtr& folder : report.largestFolders) {
        folders.push_back(
            {{"path", platform::JsonCoding::escapedPath(canonicalPath(folder->path()))},
             {"size", folder->size}});
    }
    return {{"composition", {{"total", report.composition.total}, {"segments", segments}}},
            {"recommendations", rows},
            {"largestFolders", folders}};
}

} // namespace

int runOverview(Arguments& arguments) {
    const auto [scan, json] = scanFromWords(arguments);
    if (!scan) {
        return 1;
    }
    const OverviewReport report = makeReport(*scan);
    if (json) {
        printJson(std::cout, reportJson(report));
    } else {
        printText(report);
    }
    return 0;
}

} // namespace dorvik::cli
