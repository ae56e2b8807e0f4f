#include "cli/ScanSource.h"

#include "base/TextForms.h"
#include "cli/Arguments.h"
#include "platform/FileSystem.h"
#include "platform/Terminal.h"
#include "scanning/ScanArchive.h"
#include "scanning/ScanPaths.h"
#include "scanning/Scanner.h"
#include "scanning/WalkThreads.h"
#include "state/StoredExclusions.h"

#include <iostream>

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

std::set<std::string> scanExclusions(std::set<std::string> given, bool withStored) {
    if (withStored) {
        given.merge(StoredExclusions::read());
    }
    return given;
}

int threadsOption(Arguments& arguments, const std::string& option) {
    const int64_t threads = arguments.number(option, oneThread);
    if (threads > mostWalkThreads) {
        throw UsageError(option + " takes at most " + std::to_string(mostWalkThreads));
    }
    return static_cast<int>(threads);
}

std::optional<ScanResult> scanOnTerminal(const std::string& root,
                                         const std::set<std::string>& excluded, int threads) {
    if (!platform::pathExists(root)) {
        throw InputError("no such folder: " + root);
    }
    if (!platform::isDirectory(root)) {
        throw InputError("not a folder: " + root);
    }
    Scanner scanner({.threads = threads});
    const bool live = platform::standardErrorIsTerminal();
    auto result =
        scanner.scan(root, excluded, live ? Scanner::ProgressCallback(showProgress) : nullptr);
    if (live) {
        std::cerr << "\r\033[K" << std::flush;
    }
    if (!result) {
        std::cerr << "dorvik-cli: could not scan " << root << "\n";
    } else if (result->root->unreadable) {
        std::cerr << "dorvik-cli: cannot read the folder " << root << "\n";
        return std::nullopt;
    }
    return result;
}

ScanResult loadArchivedScan(const std::string& path) {
    if (!platform::pathExists(path)) {
        throw InputError("no such file: " + path);
    }
    auto archived = ScanArchive::read(path);
    if (!archived) {
        throw InputError("not a Dorvik scan archive: " + path);
    }
    return std::move(archived->scan);
}

std::optional<ScanResult> scanFolderOrArchive(const std::optional<std::string>& folder,
                                              const std::optional<std::string>& archive,
                                              const std::set<std::string>& excluded, int threads) {
    if (folder && archive) {
        throw UsageError("give a folder or --load, not both");
    }
    if (archive) {
        return loadArchivedScan(*archive);
    }
    return scanOnTerminal(folder.value_or(normalisedPath(".")), excluded, threads);
}

ScanAndFormat scanFromWords(Arguments& arguments) {
    std::optional<std::string> folder;
    std::optional<std::string> archive;
    bool json = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--load") {
            archive = arguments.value(word);
        } else if (word == "--json") {
            json = true;
        } else if (word.starts_with("-") || folder) {
            throw UsageError("unexpected " + word);
        } else {
            folder = normalisedPath(word);
        }
    }
    return {scanFolderOrArchive(folder, archive, scanExclusions({}, true), machineThreads()), json};
}

} // namespace dorvik::cli
