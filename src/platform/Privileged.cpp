#include "platform/Privileged.h"

namespace dorvik::platform {

namespace {

// pkexec's own failures: 126 when the user dismissed the prompt or was not authorised, 127 when
// the authorisation could not be obtained at all.
constexpr int dismissedStatus = 126;
constexpr int notAuthorisedStatus = 127;

} // namespace

std::vector<std::string> privilegedArguments(const std::string& commandLine) {
    return {std::string(pkexecPath), "/bin/sh", "-c", commandLine};
}

std::optional<std::string> runPrivileged(const std::string& commandLine, std::string_view fallback,
                                         const ProcessRunner& run) {
    const ToolRun result = run(privilegedArguments(commandLine));
    if (result.launched && result.exitStatus == 0) {
        return std::nullopt;
    }
    if (result.launched &&
        (result.exitStatus == dismissedStatus || result.exitStatus == notAuthorisedStatus)) {
        return std::string(cancelledMessage);
    }
    return toolMessage(result, fallback);
}

} // namespace dorvik::platform
