#pragma once

// The one road to an administrator's rights: a command line run by the system shell under
// pkexec, which asks for the administrator's password in the desktop's own prompt. Every
// privileged operation of the program passes here, after it has validated what it put in the
// command line.

#include "platform/RunTool.h"

#include <optional>
#include <string>
#include <string_view>

namespace dorvik::platform {

inline constexpr std::string_view pkexecPath = "/usr/bin/pkexec";
inline constexpr std::string_view cancelledMessage = "Cancelled.";

// The words handed to the runner for `commandLine`: pkexec, the shell, "-c" and the line.
std::vector<std::string> privilegedArguments(const std::string& commandLine);

// Runs `commandLine` as the administrator through `run`. None on success; otherwise the text to
// show: "Cancelled." when the prompt was dismissed or refused (pkexec's exit 126 or 127), else
// what the command wrote to standard error, else `fallback`. Blocks while the prompt is open.
std::optional<std::string> runPrivileged(const std::string& commandLine, std::string_view fallback,
                                         const ProcessRunner& run = runProcess);

} // namespace dorvik::platform
