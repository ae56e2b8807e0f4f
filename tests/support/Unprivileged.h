#pragma once

// Root reads every folder whatever its permissions, so a test of an unreadable folder runs its
// work in a child process that has given root up.

#include <cstdint>
#include <functional>
#include <optional>

namespace dorvik::test {

// Runs `work` as an ordinary user and returns its answer: directly when this process is not root,
// else in a forked child that has switched to the user "nobody" (65534). None, and a test failure,
// when the child cannot report.
std::optional<int64_t> runUnprivileged(const std::function<int64_t()>& work);

} // namespace dorvik::test
