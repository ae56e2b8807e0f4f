#pragma once

// A real process started from a given executable, stopped and reaped when the object ends.

#include <string>
#include <sys/types.h>
#include <vector>

namespace dorvik::test {

class ChildProcess {
public:
    // Starts `executable` with `arguments`; fails the test if it cannot. The executable has
    // replaced this program's image in the child by the time the constructor returns.
    ChildProcess(const std::string& executable, const std::vector<std::string>& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Kills the process and waits for it to end.
    void stop();

private:
    pid_t pid_ = -1;
};

} // namespace dorvik::test
