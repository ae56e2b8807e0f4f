#include "platform/ProcessAlive.h"

#include <cerrno>
#include <csignal>
#include <sys/types.h>
#include <unistd.h>

namespace dorvik::platform {

bool processIsAlive(long pid) {
    if (pid <= 0) {
        return false;
    }
    return kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
}

long currentProcessId() {
    return static_cast<long>(getpid());
}

} // namespace dorvik::platform
