#pragma once

// Sets an environment variable for the life of the object and puts the old value back after.

#include <optional>
#include <string>

namespace dorvik::test {

class ScopedEnvironment {
public:
    ScopedEnvironment(std::string name, const std::string& value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string name_;
    std::optional<std::string> previous_;
};

// Points the settings, the application's files and the home folder of the whole test run into
// `root` (a temporary folder), so that no test reads or writes the user's own.
void usePrivateFolders(const std::string& root);

} // namespace dorvik::test
