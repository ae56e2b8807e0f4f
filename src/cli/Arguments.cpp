#include "cli/Arguments.h"

#include <charconv>
#include <filesystem>

namespace dorvik::cli {

std::string Arguments::value(const std::string& option) {
    if (done()) {
        throw UsageError(option + " needs a value");
    }
    return take();
}

int64_t Arguments::number(const std::string& option, int64_t minimum) {
    const std::string text = value(option);
    int64_t result = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    if (error != std::errc() || end != text.data() + text.size() || result < minimum) {
        throw UsageError(option + " takes a whole number of at least " + std::to_string(minimum) +
                         ", not \"" + text + "\"");
    }
    return result;
}

bool takeJsonOption(Arguments& arguments) {
    bool json = false;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word != "--json") {
            throw UsageError("unknown word " + word);
        }
        json = true;
    }
    return json;
}

std::string normalisedPath(const std::string& path) {
    std::string result = std::filesystem::absolute(path).lexically_normal().string();
    while (result.size() > 1 && result.back() == '/') {
        result.pop_back();
    }
    return result;
}

std::string absolutePath(const std::string& path) {
    std::string result = std::filesystem::absolute(path).string();
    while (result.size() > 1 && result.back() == '/') {
        result.pop_back();
    }
    return result;
}

} // namespace dorvik::cli
