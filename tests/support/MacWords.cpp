#include "support/MacWords.h"

#include <regex>

namespace dorvik::test {

std::vector<std::string> macWordsIn(std::string_view text) {
    static const std::vector<std::pair<std::string, std::regex>> words = [] {
        std::vector<std::pair<std::string, std::regex>> list;
        for (const char* word :
             {"Mac", "macOS", "OS X", "Macintosh", "Finder", "APFS", "Time Machine",
              "System Settings", "System Preferences", "Full Disk Access", "Spotlight",
              "System Integrity Protection", "SIP"}) {
            list.emplace_back(word, std::regex(std::string("\\b") + word + "\\b"));
        }
        // The Mac's library folder; a Linux home keeps no such thing.
        list.emplace_back("~/Library", std::regex("~/Library\\b"));
        return list;
    }();
    std::vector<std::string> found;
    const std::string subject(text);
    for (const auto& [word, pattern] : words) {
        if (std::regex_search(subject, pattern)) {
            found.push_back(word);
        }
    }
    return found;
}

} // namespace dorvik::test
