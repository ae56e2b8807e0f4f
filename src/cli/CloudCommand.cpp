// dorvik-cli cloud: what iCloud keeps downloaded on this computer, folder by folder, and what
// lies only in the cloud. On Linux iCloud is not in use, and the report says so.

#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "reclaim/CloudDownloads.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>

namespace dorvik::cli {

namespace {

struct CloudFigures {
    int64_t onThisComputer = 0;
    int64_t canBeFreed = 0;
    int64_t onlyInCloud = 0;
};

CloudFigures figures(const CloudReport& report) {
    CloudFigures sums;
    for (const CloudFolder& folder : report.folders) {
        sums.onThisComputer += folder.localSize;
        sums.onlyInCloud += folder.cloudOnlySize;
        for (const CloudItem& item : folder.items) {
            sums.canBeFreed += item.isUploaded ? item.size : 0;
        }
    }
    return sums;
}

void printText(const CloudReport& report) {
    if (!report.isAvailable) {
        std::cout << Wording::shown("iCloud Drive isn\u2019t in use on this Mac") << "\n"
                  << Wording::shown("Turn it on in System Settings \u203a Apple Account \u203a "
                                    "iCloud to see it here.")
                  << "\n";
        return;
    }
    const CloudFigures sums = figures(report);
    std::cout << Wording::shown("On this Mac") << ": " << TextForms::size(sums.onThisComputer)
              << "\nCan be freed: " << TextForms::size(sums.canBeFreed)
              << "\nOnly in iCloud: " << TextForms::size(sums.onlyInCloud) << "\n";
    for (const CloudFolder& folder : report.folders) {
        std::cout << "\n"
                  << std::setw(10) << TextForms::size(folder.localSize) << "  "
                  << quotedForTerminal(folder.title) << (folder.isApp ? " (app)" : "") << "  "
                  << folder.items.size() << " downloaded files";
        if (folder.cloudOnlySize >= 1) {
            std::cout << " \u00B7 " << TextForms::size(folder.cloudOnlySize)
                      << " more only in iCloud";
        }
        std::cout << "\n";
        for (const CloudItem& item : folder.items) {
            std::cout << "  " << std::setw(10) << TextForms::size(item.size) << "  "
                      << shownPath(item.path) << (item.isUploaded ? "" : "  [Still uploading]")
                      << "\n";
        }
    }
}

nlohmann::json reportJson(const CloudReport& report) {
    nlohmann::json folders = nlohmann::json::array();
    for (const CloudFolder& folder : report.folders) {
        nlohmann::json items = nlohmann::json::array();
        for (const CloudItem& item : folder.items) {
            items.push_back({{"path", platform::JsonCoding::escapedPath(item.path)},
                             {"name", item.name},
                             {"size", item.size},
                             {"isUploaded", item.isUploaded}});
        }
        folders.push_back({{"path", platform::JsonCoding::escapedPath(folder.path)},
                           {"title", folder.title},
                           {"isApp", folder.isApp},
                           {"localSize", folder.localSize},
                           {"cloudOnlySize", folder.cloudOnlySize},
                           {"cloudOnlyCount", folder.cloudOnlyCount},
                           {"items", std::move(items)}});
    }
    const CloudFigures sums = figures(report);
    return {{"isAvailable", report.isAvailable},
            {"onThisComputer", sums.onThisComputer},
            {"canBeFreed", sums.canBeFreed},
            {"onlyInCloud", sums.onlyInCloud},
            {"folders", std::move(folders)}};
}

} // namespace

int runCloud(Arguments& arguments) {
    const bool json = takeJsonOption(arguments);
    const CloudReport report = buildCloudReport();
    if (json) {
        printJson(std::cout, reportJson(report));
    } else {
        printText(report);
    }
    return 0;
}

} // namespace dorvik::cli
