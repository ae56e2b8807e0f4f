#include "cli/Commands.h"
#include "cli/ScanReport.h"
#include "platform/FileSystem.h"
#include "platform/Terminal.h"
#include "scanning/ScanPaths.h"
#include "scanning/ScanTarget.h"
#include "scanning/Scanner.h"
#include "system/TextForms.h"

#include <nlohmann/json.hpp>

#include <iostream>
#include <set>

namespace dorvik::cli {

namespace {

// One line of live progress on a terminal, rewritten in place.
void showProgress(int64_t files, int64_t bytes, const std::string& path) {
    constexpr size_t shownPathLength = 60;
    std::string shown = displayPath(path);
    if (shown.size() > shownPathLength) {
        shown = "\u2026" + shown.substr(shown.size() - shownPathLength);
    }
    std::cerr << "\r\033[K" << TextForms::count(files) << " files, " << TextForms::size(bytes)
              << "  " << shown << std::flush;
}

} // namespace

int runScan(Arguments& arguments) {
    std::optional<std::string> rootPath;
    std::set<std::string> excluded;
    int64_t top = 10;
    bool json = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--home" || word == "--disk") {
            if (rootPath) {
                throw UsageError("give one folder, --home or --disk");
            }
            rootPath = (word == "--home" ? ScanTarget::home() : ScanTarget::wholeDisk()).rootPath();
        } else if (word == "--exclude") {
            excluded.insert(canonicalPath(normalisedPath(arguments.value(word))));
        } else if (word == "--top") {
            top = arguments.number(word, 0);
        } else if (word == "--json") {
            json = true;
        } else if (word.starts_with("-") && word != "-") {
            throw UsageError("unknown option " + word);
        } else {
            if (rootPath) {
                throw UsageError("give one folder, --home or --disk");
            }
            rootPath = word;
        }
    }
    const std::string root = normalisedPath(rootPath.value_or("."));
    if (!platform::pathExists(root)) {
        throw InputError("no such folder: " + root);
    }
    if (!platform::isDirectory(root)) {
        throw InputError("not a folder: " + root);
    }

    Scanner scanner;
    const bool live = platform::standardErrorIsTerminal();
    const auto result =
        scanner.scan(root, excluded, live ? Scanner::ProgressCallback(showProgress) : nullptr);
    if (live) {
        std::cerr << "\r\033[K" << std::flush;
    }
    if (!result) {
        std::cerr << "dorvik-cli: could not scan " << root << "\n";
        return 1;
    }
    if (json) {
        printJson(std::cout, scanReportJson(*result, static_cast<size_t>(top)));
    } else {
        std::cout << scanReportText(*result, static_cast<size_t>(top));
    }
    return 0;
}

} // namespace dorvik::cli
