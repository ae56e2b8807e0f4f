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

// Runs dorvik-cli as a script or a scheduled job would: standard input is no terminal, and
// standard error is merged into the output.
CliRun cliUnattended(const std::string& words);

// The same with a terminal for standard input and output (a pseudo-terminal), on which `answer`
// is typed once the command has asked; output holds all the terminal showed.
CliRun cliOnTerminal(const std::string& words, const std::string& answer,
                     const std::string& environment = "");

// `text` in single quotes for the shell.
std::string shellQuoted(const std::string& text);

} // namespace dorvik::test
