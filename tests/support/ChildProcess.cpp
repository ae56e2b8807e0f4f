#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace dorvik::test {

ChildProcess::ChildProcess(const std::string& executable,
                           const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {executable};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    // glibc's posix_spawn returns only once the child has run execve, so /proc already shows the
    // new executable.
    const int error =
        posix_spawn(&pid_, executable.c_str(), nullptr, nullptr, argv.data(), environ);
    if (error != 0) {
        pid_ = -1;
        ADD_FAILURE() << "posix_spawn " << executable << ": " << std::strerror(error);
    }
}

ChildProcess::~ChildProcess() {
    stop();
}

void ChildProcess::stop() {
    if (pid_ <= 0) {
        return;
    }
    kill(pid_, SIGKILL);
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
}

} // namespace dorvik::test
