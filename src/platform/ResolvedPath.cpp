#include "platform/ResolvedPath.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>

namespace dorvik::platform {

namespace {

std::string trimmed(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

std::optional<std::string> realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                               &std::free);
    if (!resolved) {
        return std::nullopt;
    }
    return std::string(resolved.get());
}

} // namespace

std::string resolvedPath(const std::string& path) {
    const std::string whole = trimmed(path);
    if (whole.empty() || whole[0] != '/') {
        return whole;
    }
    // The longest part that the system can resolve, then the rest as written.
    for (size_t end = whole.size(); end != std::string::npos && end > 0;
         end = whole.rfind('/', end - 1)) {
        if (const auto resolved = realPath(end == 0 ? "/" : whole.substr(0, end))) {
            // Behind the part that exists there is no link to follow: the rest folds as text.
            const std::string rest = whole.substr(end);
            return trimmed(std::filesystem::path(*resolved + rest).lexically_normal().string());
        }
        if (end == 0) {
            break;
        }
    }
    return whole;
}

std::string withResolvedFolders(const std::string& path) {
    const std::string whole = trimmed(path);
    const size_t slash = whole.rfind('/');
    if (slash == std::string::npos || whole == "/") {
        return whole;
    }
    const std::string name = whole.substr(slash + 1);
    if (name == "." || name == ".." || name.empty()) {
        return resolvedPath(whole);
    }
    const std::string folder = resolvedPath(slash == 0 ? "/" : whole.substr(0, slash));
    return folder == "/" ? "/" + name : folder + "/" + name;
}

} // namespace dorvik::platform
