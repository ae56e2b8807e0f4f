#include "cli/CliRun.h"

#include <cstdio>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

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

CliRun cliUnattended(const std::string& words) {
    return cli(words + " </dev/null", true);
}

CliRun cliOnTerminal(const std::string& words, const std::string& answer,
                     const std::string& environment) {
    const std::string command = environment + " " + std::string(DORVIK_CLI) + " " + words;
    int terminal = -1;
    const pid_t pid = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (pid == 0) {
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    CliRun run;
    if (pid < 0) {
        return run;
    }
    bool answered = false;
    char buffer[4096];
    while (true) {
        // The question ends with "[y/N] "; the answer goes in once it is there.
        const ssize_t got = read(terminal, buffer, sizeof buffer);
        if (got <= 0) {
            break; // EIO once the command has ended and the terminal closed
        }
        run.out.append(buffer, static_cast<size_t>(got));
        if (!answered && run.out.find("[y/N] ") != std::string::npos) {
            const std::string line = answer + "\n";
            if (write(terminal, line.data(), line.size()) < 0) {
                break;
            }
            answered = true;
        }
    }
    close(terminal);
    int status = 0;
    waitpid(pid, &status, 0);
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
