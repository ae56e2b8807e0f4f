#include "support/Unprivileged.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dorvik::test {

namespace {

constexpr uid_t unprivilegedUser = 65534;
constexpr gid_t unprivilegedGroup = 65534;

} // namespace

void handToUnprivileged(const std::string& root) {
    if (!ignoresPermissions()) {
        return;
    }
    namespace fs = std::filesystem;
    std::error_code error;
    lchown(root.c_str(), unprivilegedUser, unprivilegedGroup);
    for (auto it = fs::recursive_directory_iterator(root, error);
         !error && it != fs::recursive_directory_iterator(); it.increment(error)) {
        lchown(it->path().c_str(), unprivilegedUser, unprivilegedGroup);
    }
    for (fs::path up = fs::path(root).parent_path(); up != up.root_path(); up = up.parent_path()) {
        struct stat st {};
        if (stat(up.c_str(), &st) == 0) {
            chmod(up.c_str(), st.st_mode | S_IXOTH);
        }
    }
}

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
        const bool dropped = setgroups(0, nullptr) == 0 && setgid(unprivilegedGroup) == 0 &&
                             setuid(unprivilegedUser) == 0;
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
