#pragma once

// A small reader of command-line words for dorvik-cli's commands.

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace dorvik::cli {

// Bad words on the command line: the command prints its usage and exits with status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Input that is well formed but unusable (a missing folder, a file that is no archive): the
// message alone, and exit status 2.
struct InputError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Arguments {
public:
    explicit Arguments(std::vector<std::string> words) : words_(std::move(words)) {}

    bool done() const { return next_ >= words_.size(); }
    const std::string& peek() const { return words_.at(next_); }
    std::string take() { return words_.at(next_++); }

    // The value after an option such as "--top"; a usage error when there is none.
    std::string value(const std::string& option);
    int64_t number(const std::string& option, int64_t minimum);

private:
    std::vector<std::string> words_;
    size_t next_ = 0;
};

// For a command whose one option is --json: whether it was given. Any other word is a usage
// error.
bool takeJsonOption(Arguments& arguments);

// Absolute and without "." or ".." or a trailing "/", so that a path given on the command line
// compares with the paths a walk produces.
std::string normalisedPath(const std::string& path);

// Absolute, without a trailing "/", and otherwise as given: a ".." after a link is left for the
// system to resolve, which goes up from the link's target, not back along the text.
std::string absolutePath(const std::string& path);

} // namespace dorvik::cli
