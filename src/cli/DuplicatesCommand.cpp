// dorvik-cli duplicates: the groups of identical files in a scan, largest recoverable first, and
// on request the copies made to share their storage with the oldest file of their group.

#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/RemovalRun.h"
#include "cli/ScanSource.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "platform/Terminal.h"
#include "reclaim/DuplicateFinder.h"
#include "reclaim/DuplicateSelection.h"
#include "reclaim/FileClone.h"
#include "reclaim/ShareToast.h"
#include "scanning/WalkThreads.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <iomanip>
#include <iostream>

namespace dorvik::cli {

namespace {

int64_t totalRecoverable(const std::vector<DuplicateGroup>& groups) {
    int64_t total = 0;
    for (const DuplicateGroup& group : groups) {
        total += group.recoverableBytes();
    }
    return total;
}

void printGroups(const std::vector<DuplicateGroup>& groups) {
    for (const DuplicateGroup& group : groups) {
        std::cout << group.files.size() << " copies \u00B7 " << TextForms::size(group.size)
                  << " each \u00B7 " << TextForms::size(group.recoverableBytes())
                  << " recoverable\n";
        for (const FileNodePtr& file : group.files) {
            std::cout << "  " << std::setw(12) << TextForms::abbreviatedDate(file->modified) << "  "
                      << shownPath(file->path())
                      << (group.shared.contains(file.get()) ? "  (shares space)" : "") << "\n";
        }
    }
    std::cout << TextForms::counted(static_cast<int64_t>(groups.size()), "group", "groups")
              << " \u00B7 " << TextForms::size(totalRecoverable(groups)) << " recoverable\n";
}

nlohmann::json groupsJson(const std::vector<DuplicateGroup>& groups) {
    nlohmann::json list = nlohmann::json::array();
    for (const DuplicateGroup& group : groups) {
        nlohmann::json files = nlohmann::json::array();
        for (const FileNodePtr& file : group.files) {
            files.push_back({{"path", platform::JsonCoding::escapedPath(file->path())},
                             {"modified", file->modified},
                             {"shared", group.shared.contains(file.get())}});
        }
        list.push_back({{"id", group.id},
                        {"size", group.size},
                        {"recoverableBytes", group.recoverableBytes()},
                        {"files", files}});
    }
    return {{"groups", list}};
}

// Every group's copies paired with its first, oldest file, which is kept as it is.
std::vector<std::pair<std::string, std::string>>
copiesWithTheirOriginal(const std::vector<DuplicateGroup>& groups) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const auto& [copy, original] : sharingPairs(groups, allCopies(groups))) {
        pairs.emplace_back(copy->path(), original->path());
    }
    return pairs;
}

// The toast's lines, then each refusal with its reason. 0 when nothing was refused.
int printShareReport(const FileClone::CloneReport& report) {
    const Toast toast = shareToast(report);
    std::cout << Wording::shown(toast.message) << "\n";
    if (toast.detail) {
        std::cout << Wording::shown(*toast.detail) << "\n";
    }
    if (report.alreadyShared > 0) {
        std::cout << report.alreadyShared << " already shared their space.\n";
    }
    for (const DeletionFailure& failure : report.failures) {
        std::cout << "  " << shownPath(failure.path) << ": " << Wording::shown(failure.reason)
                  << "\n";
    }
    return report.failures.empty() ? 0 : 1;
}

void showProgress(double fraction) {
    std::cerr << "\r\033[KComparing contents\u2026 " << std::lround(fraction * 100) << "%"
              << std::flush;
}

} // namespace

int runDuplicates(Arguments& arguments) {
    std::optional<std::string> folder;
    std::optional<std::string> archive;
    int64_t minSize = duplicateMinSize;
    bool json = false;
    bool share = false;
    bool yes = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--load") {
            archive = arguments.value(word);
        } else if (word == "--min-size") {
            minSize = arguments.number(word, 0);
        } else if (word == "--json") {
            json = true;
        } else if (word == "--share") {
            share = true;
        } else if (word == "--yes") {
            yes = true;
        } else if (word.starts_with("-") || folder) {
            throw UsageError("unexpected " + word);
        } else {
            folder = normalisedPath(word);
        }
    }
    if (json && share) {
        throw UsageError("--share reports on the terminal, not in JSON");
    }
    if (yes && !share) {
        throw UsageError("--yes goes with --share");
    }
    const std::optional<ScanResult> scan =
        scanFolderOrArchive(folder, archive, scanExclusions({}, true), machineThreads());
    if (!scan) {
        return 1;
    }
    const bool live = platform::standardErrorIsTerminal();
    const std::vector<DuplicateGroup> groups = findDuplicates(
        scan->files, minSize, live ? showProgress : [](double) {});
    if (live) {
        std::cerr << "\r\033[K" << std::flush;
    }
    if (json) {
        printJson(std::cout, groupsJson(groups));
        return 0;
    }
    printGroups(groups);
    if (!share) {
        return 0;
    }
    const auto pairs = copiesWithTheirOriginal(groups);
    if (pairs.empty()) {
        std::cout << "Nothing to share.\n";
        return 0;
    }
    const std::string question = "Replace " + std::to_string(pairs.size()) +
                                 " copies by clones of the oldest file of their group?";
    if (!confirmed(question, yes)) {
        std::cout << "Nothing was changed.\n";
        return 1;
    }
    return printShareReport(FileClone::share(pairs));
}

} // namespace dorvik::cli
