#include "base/Dates.h"
#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "system/VolumeInfo.h"
#include "trends/Forecast.h"
#include "trends/SnapshotChanges.h"
#include "trends/TrendStore.h"
#include "trends/TrendTexts.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>
#include <sstream>

namespace dorvik::cli {

namespace {

constexpr std::string_view tintNames[] = {"green", "amber", "red"};

// Everything the command shows, computed once for both outputs.
struct TrendsReport {
    size_t samples = 0;
    std::optional<VolumeInfo> volume;
    std::optional<SpaceForecast> forecast;
    std::optional<ForecastSummary> summary;
    double learningDays = 0;
    std::optional<std::string> root;
    std::vector<ScanSnapshot> history;
    std::optional<ComparedSnapshots> compared;
    std::vector<BucketChange> buckets;
    std::vector<FolderChange> folders;
};

TrendsReport makeReport(const TrendStore& store, const std::optional<std::string>& root,
                        double now) {
    TrendsReport report;
    report.samples = store.samples().size();
    report.volume = volumeInfo("/");
    if (report.volume) {
        report.forecast =
            forecast(store.samples(), report.volume->available, now, ForecastLimits::lookbackDays);
    }
    report.summary = forecastSummary(report.forecast, now);
    report.learningDays = learningDays(store.samples(), now);
    report.root = root ? root : store.latestRoot();
    if (report.root) {
        report.history = store.history(*report.root);
    }
    report.compared = comparedSnapshots(report.history, std::nullopt);
    if (report.compared) {
        report.buckets = bucketChanges(report.compared->older, report.compared->newer,
                                       ChangeLimits::bucketThreshold);
        report.folders = folderChanges(report.compared->older, report.compared->newer,
                                       ChangeLimits::folderThreshold, ChangeLimits::folderRowLimit);
    }
    return report;
}

// `text` followed by spaces up to `width` characters (UTF-8 continuation bytes not counted).
std::string padded(const std::string& text, size_t width) {
    size_t characters = 0;
    for (const char byte : text) {
        characters += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1 : 0;
    }
    return text + std::string(width > characters ? width - characters : 0, ' ');
}

void printText(std::ostream& out, const TrendsReport& report, double now) {
    out << "Space samples: " << report.samples << "\n\n";
    if (report.summary) {
        out << report.summary->title << "\n" << report.summary->detail << "\n";
    } else {
        out << TrendTexts::learningTitle << "\n" << TrendTexts::learningText << "\n";
        std::ostringstream days;
        days << std::fixed << std::setprecision(1) << report.learningDays;
        out << days.str() << " of 2 days learned";
        if (!report.volume) {
            out << "; the free space of / cannot be read, so there is no forecast";
        }
        out << ".\n";
    }

    out << "\n" << TrendTexts::changesTitle;
    if (report.root) {
        out << " in " << shownPath(*report.root);
    }
    out << "\n";
    if (report.history.empty()) {
        out << TrendTexts::noHistoryText << "\n";
        return;
    }
    if (!report.compared) {
        out << TrendTexts::firstMeasurementText(report.history.front().date, now) << "\n";
        return;
    }
    const ScanSnapshot& older = report.compared->older;
    const ScanSnapshot& newer = report.compared->newer;
    out << TrendTexts::sinceText(older.date, now) << " (" << TextForms::abbreviatedDate(older.date)
        << "): " << TextForms::signedSize(sizeChange(older.total, newer.total)) << " "
        << TrendTexts::scannedRangeText(older, newer) << "\n";
    if (!report.buckets.empty()) {
        out << "\n";
        for (const BucketChange& change : report.buckets) {
            out << "  " << padded(Wording::shown(info(change.bucket).displayName), 26)
                << TextForms::signedSize(change.delta) << "\n";
        }
    }
    out << "\n";
    if (report.folders.empty()) {
        out << TrendTexts::noFolderChangeText << "\n";
    }
    for (const FolderChange& change : report.folders) {
        const std::string path = shownPath(change.path);
        std::string line = "  " + padded(TextForms::signedSize(change.change()), 14) + " ";
        line += change.isRemainder ? "Other items in " + path : path;
        if (!change.isRemainder && change.after != 0) {
            line += "  (" + TextForms::size(change.after) + ")";
        }
        if (const auto badge = TrendTexts::folderRowBadge(change)) {
            line += "  " + *badge;
        }
        out << line << "\n";
    }
}

nlohmann::json snapshotJson(const ScanSnapshot& snapshot) {
    return {{"id", snapshot.id}, {"date", snapshot.date}, {"total", snapshot.total}};
}

nlohmann::json reportJson(const TrendsReport& report, double now) {
    nlohmann::json document = {
        {"samples", report.samples},
        {"volumeKnown", report.volume.has_value()},
        {"forecast", nullptr},
        {"learning", nullptr},
        {"root", report.root ? nlohmann::json(platform::JsonCoding::escapedPath(*report.root))
                             : nlohmann::json(nullptr)},
        {"snapshots", report.history.size()},
        {"changes", nullptr},
    };
    if (report.summary) {
        document["forecast"] = {
            {"bytesPerDay", report.forecast->bytesPerDay},
            {"spanDays", report.forecast->spanDays},
            {"daysLeft", report.forecast->daysLeft ? nlohmann::json(*report.forecast->daysLeft)
                                                   : nlohmann::json(nullptr)},
            {"title", report.summary->title},
            {"detail", report.summary->detail},
            {"symbol", report.summary->symbol},
            {"tint", tintNames[static_cast<size_t>(report.summary->tint)]},
        };
    } else {
        document["learning"] = {
            {"title", TrendTexts::learningTitle},
            {"text", TrendTexts::learningText},
            {"days", report.learningDays},
            {"of", ForecastLimits::minimumSpanDays},
        };
    }
    if (report.history.size() == 1) {
        document["message"] = TrendTexts::firstMeasurementText(report.history.front().date, now);
    } else if (report.history.empty()) {
        document["message"] = TrendTexts::noHistoryText;
    }
    if (!report.compared) {
        return document;
    }
    nlohmann::json buckets = nlohmann::json::array();
    for (const BucketChange& change : report.buckets) {
        buckets.push_back({{"bucket", info(change.bucket).caseName},
                           {"name", Wording::shown(info(change.bucket).displayName)},
                           {"delta", change.delta}});
    }
    nlohmann::json folders = nlohmann::json::array();
    for (const FolderChange& change : report.folders) {
        const auto badge = TrendTexts::folderRowBadge(change);
        folders.push_back({
            {"path", platform::JsonCoding::escapedPath(change.path)},
            {"title", TrendTexts::folderRowTitle(change)},
            {"before", change.before},
            {"after", change.after},
            {"change", change.change()},
            {"isRemainder", change.isRemainder},
            {"badge", badge ? nlohmann::json(*badge) : nlohmann::json(nullptr)},
        });
    }
    const ScanSnapshot& older = report.compared->older;
    const ScanSnapshot& newer = report.compared->newer;
    document["changes"] = {
        {"older", snapshotJson(older)},
        {"newer", snapshotJson(newer)},
        {"since", TrendTexts::sinceText(older.date, now)},
        {"totalChange", sizeChange(older.total, newer.total)},
        {"buckets", buckets},
        {"folders", folders},
    };
    return document;
}

} // namespace

int runTrends(Arguments& arguments) {
    std::optional<std::string> root;
    bool json = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--root") {
            root = canonicalPath(normalisedPath(arguments.value(word)));
        } else if (word == "--json") {
            json = true;
        } else {
            throw UsageError("unknown option " + word);
        }
    }
    const double now = Dates::now();
    const TrendStore store;
    const TrendsReport report = makeReport(store, root, now);
    if (json) {
        printJson(std::cout, reportJson(report, now));
    } else {
        printText(std::cout, report, now);
    }
    return 0;
}

} // namespace dorvik::cli
