#include "system/DesktopEntry.h"

#include "platform/FileIO.h"

#include <algorithm>

namespace dorvik::DesktopEntry {

namespace {

// Real desktop entries and units are a few kilobytes.
constexpr size_t largestKeyFile = 1024 * 1024;

std::string_view trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    const size_t last = text.find_last_not_of(" \t\r");
    return text.substr(first, last - first + 1);
}

// The words of a command line, double quotes undone.
std::vector<std::string> commandWords(std::string_view line) {
    std::vector<std::string> words;
    size_t at = 0;
    while (at < line.size()) {
        while (at < line.size() && (line[at] == ' ' || line[at] == '\t')) {
            ++at;
        }
        if (at >= line.size()) {
            break;
        }
        std::string word;
        bool quoted = false;
        for (; at < line.size(); ++at) {
            const char c = line[at];
            if (quoted && c == '\\' && at + 1 < line.size()) {
                word += line[++at];
            } else if (c == '"') {
                quoted = !quoted;
            } else if (!quoted && (c == ' ' || c == '\t')) {
                break;
            } else {
                word += c;
            }
        }
        words.push_back(std::move(word));
    }
    return words;
}

} // namespace

std::optional<Keys> groupKeys(std::string_view text, std::string_view group) {
    std::optional<Keys> keys;
    bool inGroup = false;
    size_t start = 0;
    while (start < text.size()) {
        const size_t end = std::min(text.find('\n', start), text.size());
        const std::string_view line = trimmed(text.substr(start, end - start));
        start = end + 1;
        if (line.empty() || line.starts_with('#')) {
            continue;
        }
        if (line.starts_with('[') && line.ends_with(']')) {
            inGroup = line.substr(1, line.size() - 2) == group;
            if (inGroup && !keys) {
                keys.emplace();
            }
            continue;
        }
        const size_t equals = line.find('=');
        if (!inGroup || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = trimmed(line.substr(0, equals));
        if (key.empty() || key.find('[') != std::string_view::npos) {
            continue;
        }
        (*keys)[std::string(key)] = std::string(trimmed(line.substr(equals + 1)));
    }
    return keys;
}

std::optional<Keys> readGroup(const std::string& path, std::string_view group) {
    const auto bytes = platform::readWholeFile(path, largestKeyFile);
    if (!bytes) {
        return std::nullopt;
    }
    return groupKeys(std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()),
                     group);
}

std::optional<std::string> value(const Keys& keys, std::string_view key) {
    const auto found = keys.find(std::string(key));
    if (found == keys.end()) {
        return std::nullopt;
    }
    return found->second;
}

bool isTrue(const Keys& keys, std::string_view key) {
    const auto text = value(keys, key);
    return text && (*text == "true" || *text == "1");
}

std::optional<std::string> execProgram(std::string_view line) {
    line = trimmed(line);
    // systemd's marks before the program: ignore failure, argv[0] given, full privileges …
    while (!line.empty() &&
           std::string_view("-@+!:").find(line.front()) != std::string_view::npos) {
        line.remove_prefix(1);
    }
    const std::vector<std::string> words = commandWords(line);
    size_t index = 0;
    if (!words.empty() && (words[0] == "env" || words[0] == "/usr/bin/env")) {
        index = 1;
        while (index < words.size() && words[index].find('=') != std::string::npos) {
            ++index;
        }
    }
    if (index >= words.size() || words[index].empty()) {
        return std::nullopt;
    }
    return words[index];
}

std::vector<std::string> listValue(std::string_view value) {
    std::vector<std::string> names;
    size_t start = 0;
    while (start <= value.size()) {
        const size_t end = std::min(value.find(';', start), value.size());
        const std::string_view name = trimmed(value.substr(start, end - start));
        if (!name.empty()) {
            names.emplace_back(name);
        }
        start = end + 1;
    }
    return names;
}

bool isShownIn(const Keys& keys, const std::vector<std::string>& desktops) {
    const auto names = [&keys](std::string_view key) {
        return listValue(value(keys, key).value_or(""));
    };
    const auto inSession = [&desktops](const std::vector<std::string>& listed) {
        return std::ranges::any_of(listed, [&desktops](const std::string& name) {
            return std::ranges::find(desktops, name) != desktops.end();
        });
    };
    if (keys.contains("OnlyShowIn") && !inSession(names("OnlyShowIn"))) {
        return false;
    }
    return !inSession(names("NotShowIn"));
}

} // namespace dorvik::DesktopEntry
