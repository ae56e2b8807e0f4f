#include "base/PathNames.h"

#include <algorithm>

namespace dorvik {

std::string canonicalPath(std::string_view path) {
    if (path == dataVolumePath) {
        return "/";
    }
    if (isUnder(path, dataVolumePath)) {
        return std::string(path.substr(dataVolumePath.size()));
    }
    return std::string(path);
}

std::string displayPath(std::string_view path, std::string_view homeDirectory) {
    std::string canonical = canonicalPath(path);
    if (canonical == homeDirectory) {
        return "~";
    }
    if (isUnder(canonical, homeDirectory)) {
        return "~" + canonical.substr(homeDirectory.size());
    }
    return canonical;
}

bool isAtOrUnder(std::string_view path, std::string_view folder) {
    return path == folder || isUnder(path, folder);
}

bool isUnder(std::string_view path, std::string_view folder) {
    if (folder.empty() || path.size() <= folder.size() || !path.starts_with(folder)) {
        return false;
    }
    return folder.back() == '/' || path[folder.size()] == '/';
}

std::string withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return std::string(path);
}

std::string parentPath(std::string_view path) {
    const std::string trimmed = withoutTrailingSlashes(path);
    if (trimmed == "/") {
        return trimmed;
    }
    const size_t slash = trimmed.rfind('/');
    if (slash == std::string::npos) {
        return "";
    }
    return slash == 0 ? "/" : withoutTrailingSlashes(std::string_view(trimmed).substr(0, slash));
}

std::string pathName(std::string_view path) {
    const std::string trimmed = withoutTrailingSlashes(path);
    const size_t slash = trimmed.rfind('/');
    if (slash == std::string::npos || trimmed == "/") {
        return trimmed;
    }
    return trimmed.substr(slash + 1);
}

std::string childPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += name;
    return path;
}

std::vector<std::string_view> pathPieces(std::string_view path) {
    std::vector<std::string_view> pieces;
    pieces.reserve(static_cast<size_t>(std::ranges::count(path, '/')) + 1);
    size_t start = 0;
    while (start < path.size()) {
        size_t end = path.find('/', start);
        if (end == std::string_view::npos) {
            end = path.size();
        }
        if (end > start) {
            pieces.push_back(path.substr(start, end - start));
        }
        start = end + 1;
    }
    return pieces;
}

std::string asciiLowerCase(std::string_view text) {
    std::string lowered(text);
    for (char& ch : lowered) {
        if (ch >= 'A' && ch <= 'Z') {
            ch = static_cast<char>(ch - 'A' + 'a');
        }
    }
    return lowered;
}

std::string lowerCaseExtension(std::string_view name) {
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) {
        return {};
    }
    return asciiLowerCase(name.substr(dot + 1));
}

} // namespace dorvik
