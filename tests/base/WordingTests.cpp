#include "base/Wording.h"
#include "support/MacWords.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace dorvik {
namespace {

TEST(Wording, TheTableRendersEachKeyOnceAndNamesNoMac) {
    std::set<std::string_view> keys;
    for (const Wording::Rendering& row : Wording::renderings()) {
        EXPECT_TRUE(keys.insert(row.key).second) << "twice: " << row.key;
        EXPECT_FALSE(row.shown.empty()) << row.key;
        EXPECT_NE(row.shown, row.key);
        EXPECT_EQ(test::macWordsIn(row.shown), std::vector<std::string>{}) << row.shown;
        EXPECT_EQ(Wording::shown(row.key), row.shown);
    }
}

TEST(Wording, KeysAreMatchedWhole) {
    const struct {
        std::string key;
        std::string shown;
    } cases[] = {
        {"Show in Finder", "Show in File Manager"},
        {"Macintosh HD", "File System"},
        {"macOS libraries.", "System libraries."},
        {"Show in Finder ", "Show in Finder "}, // not a key: shown as it is
        {"show in finder", "show in finder"},
        {"Trash", "Trash"},
        {"", ""},
    };
    for (const auto& [key, shown] : cases) {
        EXPECT_EQ(Wording::shown(key), shown) << key;
        EXPECT_EQ(Wording::rendering(key).has_value(), key != shown) << key;
    }
}

TEST(Wording, MacWordsAreFoundAsWords) {
    const struct {
        std::string text;
        std::vector<std::string> words;
    } cases[] = {
        {"Show in Finder", {"Finder"}},
        {"Nothing leaves your Mac.", {"Mac"}},
        {"Core macOS tools.", {"macOS"}},
        {"Macintosh HD", {"Macintosh"}},
        {"real size on APFS", {"APFS"}},
        {"Part of macOS, protected by System Integrity Protection (SIP).",
         {"macOS", "System Integrity Protection", "SIP"}},
        {"Data in ~/Library from apps", {"~/Library"}},
        {"JunkFinder, MacBook, Macs, SIPs, ~/Libraryx, the file manager", {}},
        {"", {}},
    };
    for (const auto& [text, words] : cases) {
        EXPECT_EQ(test::macWordsIn(text), words) << text;
    }
}

} // namespace
} // namespace dorvik
