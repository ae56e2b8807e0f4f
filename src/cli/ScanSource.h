#pragma once

// Where a command's scan comes from: a walk of a folder shown live on a terminal, or an archive
// written earlier with `scan --save`.

#include "scanning/ScanResult.h"

#include <optional>
#include <set>
#include <string>

namespace dorvik::cli {

class Arguments;

// The folders a scan from the terminal leaves out: those given on the command line and, unless
// `withStored` is false (--no-exclusions), those the user excluded in the application.
std::set<std::string> scanExclusions(std::set<std::string> given, bool withStored);

// The value of --threads: a whole number from 1 to the most a walk takes; a usage error
// otherwise.
int threadsOption(Arguments& arguments, const std::string& option);

// Walks `root` (an absolute path) on `threads` threads, with one line of progress on standard
// error when it is a terminal. An input error for a root that is missing or no folder; none, with
// the reason said on standard error, when the walk failed or the root could not be read.
std::optional<ScanResult> scanOnTerminal(const std::string& root,
                                         const std::set<std::string>& excluded, int threads);

// The scan kept in an archive; an input error when there is none to read.
ScanResult loadArchivedScan(const std::string& path);

// The scan a command works from: the archive given with --load, else a walk of `folder` (the
// current folder when none) as scanOnTerminal makes it. A usage error when both are given.
std::optional<ScanResult> scanFolderOrArchive(const std::optional<std::string>& folder,
                                              const std::optional<std::string>& archive,
                                              const std::set<std::string>& excluded, int threads);

struct ScanAndFormat {
    std::optional<ScanResult> scan; // none when the walk failed, its reason said
    bool json = false;
};

// For a command of the words [PATH | --load FILE] [--json]: the scan they name, as
// scanFolderOrArchive makes it with the stored exclusions on every thread, and the output asked
// for. A usage error for any other word.
ScanAndFormat scanFromWords(Arguments& arguments);

} // namespace dorvik::cli
