#include "support/Unprivileged.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dorvik::test {

std::optional<int64_t> runUnprivileged(const std::function<int64_t()>& work) {
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
        const int64_t answer = work();
        const ssize_t written = write(fds[1], &answer, sizeof answer);
        _exit(written == sizeof answer ? 0 : 1);
    }
    close(fds[1]);
    int64_t answer = 0;
    const ssize_t got = pid > 0 ? read(fds[0], &answer, sizeof answer) : -1;
    close(fds[0]);
    int status = 0;
    if (pid > 0) {
        waitpid(pid, &status, 0);
    }
    if (got != static_cast<ssize_t>(sizeof answer)) {
        ADD_FAILURE() << "the unprivileged child did not answer";
        return std::nullopt;
    }
    return answer;
}

} // namespace dorvik::test
