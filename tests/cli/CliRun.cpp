#include "cli/CliRun.h"

#include <cstdio>
#include <sys/wait.h>

namespace dorvik::test {

CliRun cli(const std::string& words, bool mergeErrors, const std::string& environment) {
    const std::string command = environment + " " + std::string(DORVIK_CLI) + " " + words +
                                (mergeErrors ? " 2>&1" : " 2>/dev/null");
    FILE* pipe = popen(command.c_str(), "r");
    CliRun run;
    if (pipe == nullptr) {
        return run;
    }
    char buffer[4096];
    size_t got = 0;
    while ((got = fread(buffer, 1, sizeof buffer, pipe)) > 0) {
        run.out.append(buffer, got);
    }
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::string shellQuoted(const std::string& text) {
    std::string result = "'";
    for (char ch : text) {
        result += ch == '\'' ? std::string("'\\''") : std::string(1, ch);
    }
    return result + "'";
}

} // namespace dorvik::test
