#include "support/Unprivileged.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dorvik::test {

std::optional<std::vector<char>>
runUnprivilegedBytes(const std::function<std::vector<char>()>& work) {
    if (!ignoresPermissions()) {
        return work();
    }
    int fds[2];
    if (pipe(fds) != 0) {
        ADD_FAILURE() << "pipe";
        return std::nullopt;
    }
    const pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        const bool dropped = setgroups(0, nullptr) == 0 && setgid(65534) == 0 && setuid(65534) == 0;
        if (!dropped) {
            _exit(1);
        }
        const std::vector<char> answer = work();
        const ssize_t written = write(fds[1], answer.data(), answer.size());
        _exit(written == static_cast<ssize_t>(answer.size()) ? 0 : 1);
    }
    close(fds[1]);
    std::vector<char> answer;
    char buffer[4096];
    ssize_t got = 0;
    while (pid > 0 && (got = read(fds[0], buffer, sizeof buffer)) > 0) {
        answer.insert(answer.end(), buffer, buffer + got);
    }
    close(fds[0]);
    int status = 0;
    if (pid > 0) {
        waitpid(pid, &status, 0);
    }
    if (pid <= 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        ADD_FAILURE() << "the unprivileged child did not answer";
        return std::nullopt;
    }
    return answer;
}

} // namespace dorvik::test
