#include "platform/Terminal.h"

#include <unistd.h>

namespace dorvik::platform {

bool standardErrorIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

bool standardInputIsTerminal() {
    return isatty(STDIN_FILENO) == 1;
}

} // namespace dorvik::platform
