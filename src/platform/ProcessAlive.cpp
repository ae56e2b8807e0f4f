#include "platform/ProcessAlive.h"

#include <cerrno>
#include <csignal>
#include <sys/types.h>

namespace dorvik::platform {

bool processIsAlive(long pid) {
    if (pid <= 0) {
        return false;
    }
    return kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
}

} // namespace dorvik::platform
