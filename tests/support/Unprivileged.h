#pragma once

// Root reads every folder whatever its permissions, so a test of an unreadable folder runs its
// work in a child process that has given root up.

#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace dorvik::test {

// Runs `work` as an ordinary user and returns the bytes it answers: directly when this process
// is not root, else in a forked child that has switched to the user "nobody" (65534). None, and a
// test failure, when the child cannot report.
std::optional<std::vector<char>>
runUnprivilegedBytes(const std::function<std::vector<char>()>& work);

// Gives `root` and everything below it (links themselves, not their targets) to the user the
// unprivileged work runs as, and opens the folders above it for passing through, so that the
// work can change it. Nothing happens when this process is not root.
void handToUnprivileged(const std::string& root);

// The same for an answer of plain data.
template <typename Answer>
requires std::is_trivially_copyable_v<Answer> std::optional<Answer>
runUnprivileged(const std::function<Answer()>& work) {
    const auto bytes = runUnprivilegedBytes([&work] {
        const Answer answer = work();
        std::vector<char> out(sizeof answer);
        std::memcpy(out.data(), &answer, sizeof answer);
        return out;
    });
    if (!bytes || bytes->size() != sizeof(Answer)) {
        return std::nullopt;
    }
    Answer answer;
    std::memcpy(&answer, bytes->data(), sizeof answer);
    return answer;
}

} // namespace dorvik::test
