#pragma once

// dorvik-cli run as a script runs it, for the tests of its commands.

#include <string>

namespace dorvik::test {

struct CliRun {
    int status = -1;
    std::string out;
};

// Runs dorvik-cli with the words given (already quoted for the shell). With `mergeErrors`,
// standard error joins standard output so that messages can be checked too; else it is dropped.
CliRun cli(const std::string& words, bool mergeErrors = false);

} // namespace dorvik::test
