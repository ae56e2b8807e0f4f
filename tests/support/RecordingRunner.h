#pragma once

// Stands in for pkexec, which no test runs: records each command handed to the privileged
// runner and answers as the test tells it.

#include "platform/RunTool.h"

#include <string>
#include <vector>

namespace dorvik::test {

struct RecordingRunner {
    platform::ToolRun answer{true, 0, "", ""};
    std::vector<std::vector<std::string>> calls;

    platform::ProcessRunner runner() {
        return [this](const std::vector<std::string>& argv) {
            calls.push_back(argv);
            return answer;
        };
    }
};

} // namespace dorvik::test
