#pragma once

// dorvik-cli run as a script runs it, for the command tests.

#include <string>

namespace dorvik::test {

struct CliRun {
    int status = -1;
    std::string out;
};

// Runs dorvik-cli with the words given (already quoted for the shell); with `mergeErrors`,
// standard error is sent to standard output so that messages can be checked too. `environment`
// goes before the command ("HOME='/tmp/x'").
CliRun cli(const std::string& words, bool mergeErrors = false, const std::string& environment = "");

// `text` in single quotes for the shell.
std::string shellQuoted(const std::string& text);

} // namespace dorvik::test
