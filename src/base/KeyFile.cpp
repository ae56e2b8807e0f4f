#include "base/KeyFile.h"

namespace dorvik {

namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(" \t\r");
    return text.substr(first, last - first + 1);
}

std::string unescaped(std::string_view raw) {
    std::string value;
    value.reserve(raw.size());
    for (size_t index = 0; index < raw.size(); ++index) {
        if (raw[index] != '\\' || index + 1 == raw.size()) {
            value += raw[index];
            continue;
        }
        switch (const char next = raw[++index]) {
        case 's':
            value += ' ';
            break;
        case 'n':
            value += '\n';
            break;
        case 't':
            value += '\t';
            break;
        case 'r':
            value += '\r';
            break;
        case '\\':
            value += '\\';
            break;
        default:
            value += '\\';
            value += next;
            break;
        }
    }
    return value;
}

} // namespace

std::optional<std::string> KeyFile::value(std::string_view group, std::string_view key) const {
    const auto foundGroup = groups.find(group);
    if (foundGroup == groups.end()) {
        return std::nullopt;
    }
    const auto found = foundGroup->second.find(key);
    if (found == foundGroup->second.end()) {
        return std::nullopt;
    }
    return unescaped(found->second);
}

KeyFile parseKeyFile(std::string_view text) {
    KeyFile file;
    KeyFileGroup* current = nullptr;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[' && line.back() == ']') {
            current = &file.groups[std::string(line.substr(1, line.size() - 2))];
            continue;
        }
        const size_t equals = line.find('=');
        if (current == nullptr || equals == std::string_view::npos || equals == 0) {
            continue;
        }
        current->try_emplace(std::string(trimmed(line.substr(0, equals))),
                             std::string(trimmed(line.substr(equals + 1))));
    }
    return file;
}

} // namespace dorvik
