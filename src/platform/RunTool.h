#pragma once

// Running the system's tools: a program started by its absolute path with its arguments as they
// are (no shell in between), its two outputs read to their end, its exit awaited.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::platform {

struct ToolRun {
    bool launched = false;
    int exitStatus = -1; // the status passed to exit; -1 when killed by a signal or not launched
    std::string output;  // standard output, as UTF-8 with bad sequences replaced
    std::string errorOutput; // standard error, likewise
};

// Starts argv[0] with argv as its arguments, with standard input empty, and waits for it.
ToolRun runProcess(const std::vector<std::string>& argv);

// What runs a command line for the privileged operations: runProcess, or in tests something
// that records the command lines and answers for the system.
using ProcessRunner = std::function<ToolRun(const std::vector<std::string>& argv)>;

// The standard output of the tool at `path` run with `arguments`; empty when it cannot be
// launched. The exit status is not looked at. Blocks: call it off the main thread.
std::string runTool(const std::string& path, const std::vector<std::string>& arguments);

// Whether `path` names a file this process may execute.
bool isExecutable(const std::string& path);

// What a tool that failed said on standard error, without the blank space around it, or
// `fallback` when it said nothing.
std::string toolMessage(const ToolRun& run, std::string_view fallback);

// `bytes` with every sequence that is not UTF-8 replaced by U+FFFD.
std::string repairedUtf8(const std::string& bytes);

} // namespace dorvik::platform
