#include "base/Dates.h"
#include "cli/Commands.h"
#include "cli/ScanSource.h"
#include "scanning/FileFilter.h"
#include "scanning/FileListCsv.h"
#include "scanning/WalkThreads.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <limits>

namespace dorvik::cli {

namespace {

// Every case name of a table, for the message that refuses an unknown one.
template <typename Case, size_t count> std::string caseNames(const std::array<Case, count>& cases) {
    std::string names;
    for (Case value : cases) {
        names += (names.empty() ? "" : ", ") + std::string(info(value).caseName);
    }
    return names;
}

FileKind kindNamed(const std::string& name) {
    if (const auto kind = fileKindFromCaseName(name)) {
        return *kind;
    }
    throw UsageError("unknown kind " + name + " (one of " + caseNames(allFileKinds) + ")");
}

StorageBucket bucketNamed(const std::string& name) {
    if (const auto bucket = storageBucketFromCaseName(name)) {
        return *bucket;
    }
    throw UsageError("unknown bucket " + name + " (one of " + caseNames(allStorageBuckets) + ")");
}

// The files of the scan that pass, largest first as the list shows them at first.
std::vector<FileNodePtr> filteredFiles(const ScanResult& scan, const FileFilter& filter) {
    std::vector<FileNodePtr> files = filterFiles(scan.files, filter, Dates::now());
    std::stable_sort(files.begin(), files.end(),
                     [](const FileNodePtr& a, const FileNodePtr& b) { return a->size > b->size; });
    return files;
}

} // namespace

int runFiles(Arguments& arguments) {
    std::optional<std::string> folder;
    std::optional<std::string> archive;
    std::optional<std::string> csvPath;
    FileFilter filter;
    bool storedExclusions = true;
    int threads = machineThreads();
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--load") {
            archive = arguments.value(word);
        } else if (word == "--min-size") {
            filter.minSize = arguments.number(word, 0);
        } else if (word == "--older-than") {
            filter.modifiedOlderThanDays = static_cast<int>(
                std::min<int64_t>(arguments.number(word, 0), std::numeric_limits<int>::max()));
        } else if (word == "--kind") {
            filter.kinds.insert(kindNamed(arguments.value(word)));
        } else if (word == "--bucket") {
            filter.bucket = bucketNamed(arguments.value(word));
        } else if (word == "--query") {
            filter.query = arguments.value(word);
        } else if (word == "--no-exclusions") {
            storedExclusions = false;
        } else if (word == "--threads") {
            threads = threadsOption(arguments, word);
        } else if (word == "--csv") {
            csvPath = arguments.value(word);
        } else if (word.starts_with("-") || folder) {
            throw UsageError("unexpected " + word);
        } else {
            folder = normalisedPath(word);
        }
    }
    const std::optional<ScanResult> scan =
        scanFolderOrArchive(folder, archive, scanExclusions({}, storedExclusions), threads);
    if (!scan) {
        return 1;
    }
    const std::vector<FileNodePtr> files = filteredFiles(*scan, filter);
    if (!csvPath) {
        std::cout << fileListCsv(files);
        return 0;
    }
    if (!writeFileListCsv(*csvPath, files)) {
        std::cerr << "dorvik-cli: could not write " << *csvPath << "\n";
        return 1;
    }
    std::cerr << files.size() << (files.size() == 1 ? " file" : " files") << " written to "
              << *csvPath << "\n";
    return 0;
}

} // namespace dorvik::cli
