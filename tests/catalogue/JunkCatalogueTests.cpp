#include "catalogue/JunkCatalogue.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dorvik {
namespace {

TEST(JunkCatalogue, RulesInTheirOrder) {
    const struct {
        std::string_view id;
        JunkGroup group;
        Risk risk;
        std::string_view base;
        Removal removal;
        bool quick;
    } expected[] = {
        {"user-caches", JunkGroup::system, Risk::safe, "Library/Caches", Removal::permanent, true},
        {"user-logs", JunkGroup::system, Risk::safe, "Library/Logs", Removal::permanent, true},
        {"saved-state", JunkGroup::system, Risk::safe, "Library/Saved Application State",
         Removal::permanent, true},
        {"system-logs", JunkGroup::system, Risk::review, "/Library/Logs", Removal::permanent,
         false},
        {"trash", JunkGroup::trash, Risk::safe, ".Trash", Removal::permanent, true},
        {"mail-downloads", JunkGroup::mail, Risk::safe,
         "Library/Containers/com.apple.mail/Data/Library/Mail Downloads", Removal::permanent, true},
        {"xcode-derived", JunkGroup::developer, Risk::safe, "Library/Developer/Xcode/DerivedData",
         Removal::permanent, true},
        {"xcode-device-support", JunkGroup::developer, Risk::safe,
         "Library/Developer/Xcode/iOS DeviceSupport", Removal::permanent, true},
        {"xcode-watch-support", JunkGroup::developer, Risk::safe,
         "Library/Developer/Xcode/watchOS DeviceSupport", Removal::permanent, true},
        {"simulator-caches", JunkGroup::developer, Risk::safe,
         "Library/Developer/CoreSimulator/Caches", Removal::permanent, true},
        {"xcode-archives", JunkGroup::developer, Risk::review, "Library/Developer/Xcode/Archives",
         Removal::trash, false},
        {"npm-cache", JunkGroup::developer, Risk::safe, ".npm/_cacache", Removal::permanent, false},
        {"gradle-cache", JunkGroup::developer, Risk::safe, ".gradle/caches", Removal::permanent,
         false},
        {"dot-cache", JunkGroup::developer, Risk::review, ".cache", Removal::permanent, false},
        {"ios-updates", JunkGroup::devices, Risk::safe, "Library/iTunes/iPhone Software Updates",
         Removal::permanent, true},
        {"ios-backups", JunkGroup::devices, Risk::review,
         "Library/Application Support/MobileSync/Backup", Removal::trash, false},
        {"old-installers", JunkGroup::downloads, Risk::review, "Downloads", Removal::trash, false},
    };
    const auto& rules = JunkCatalogue::rules();
    ASSERT_GE(rules.size(), std::size(expected)); // the Linux rules follow
    for (size_t index = 0; index < std::size(expected); ++index) {
        const JunkRule& rule = rules[index];
        const auto& row = expected[index];
        EXPECT_EQ(rule.id, row.id);
        EXPECT_EQ(rule.group, row.group) << rule.id;
        EXPECT_EQ(rule.risk, row.risk) << rule.id;
        EXPECT_EQ(rule.base, row.base) << rule.id;
        EXPECT_EQ(rule.removal, row.removal) << rule.id;
        EXPECT_EQ(rule.inSmartClean, row.quick) << rule.id;
        EXPECT_FALSE(rule.title.empty()) << rule.id;
        EXPECT_TRUE(rule.explanation.ends_with('.')) << rule.id;
        const bool filters = rule.id == "old-installers";
        EXPECT_EQ(rule.extensions.has_value(), filters) << rule.id;
        EXPECT_EQ(rule.minAgeDays.has_value(), filters) << rule.id;
        EXPECT_EQ(rule.excludedNames.empty(), rule.id != "user-caches") << rule.id;
    }
    EXPECT_EQ(rules[0].excludedNames.size(), 9u);
    EXPECT_TRUE(rules[0].excludedNames.contains("app.dorvik.mac"));
    EXPECT_EQ(rules[16].extensions, (std::set<std::string>{"dmg", "pkg", "mpkg", "xip", "iso"}));
    EXPECT_EQ(rules[16].minAgeDays, 7);
    EXPECT_EQ(rules[6].title, "Xcode \u00b7 DerivedData");
    EXPECT_EQ(rules[13].explanation, "pip, Hugging Face, pre-commit\u2026 Note: they may contain "
                                     "large models you\u2019d have to download again.");
    EXPECT_EQ(info(JunkGroup::devices).title, "iPhone & iPad");
}

// What a Linux desktop adds, after the seventeen and in their form.
TEST(JunkCatalogue, LinuxRulesFollowTheSeventeen) {
    const auto& rules = JunkCatalogue::rules();
    ASSERT_EQ(rules.size(), 20u);
    const struct {
        std::string_view id;
        JunkGroup group;
        Risk risk;
        std::string_view base;
        bool inDataHome;
        Removal removal;
        bool quick;
        std::optional<std::set<std::string>> extensions;
        std::optional<int> minAgeDays;
    } expected[] = {
        {"desktop-trash", JunkGroup::trash, Risk::safe, "Trash/files", true, Removal::permanent,
         true, std::nullopt, std::nullopt},
        {"linux-installers", JunkGroup::downloads, Risk::review, "Downloads", false, Removal::trash,
         false, std::set<std::string>{"deb", "rpm", "appimage", "flatpakref", "snap"}, 7},
        {"cargo-cache", JunkGroup::developer, Risk::safe, ".cargo/registry/cache", false,
         Removal::permanent, false, std::nullopt, std::nullopt},
    };
    for (size_t index = 0; index < std::size(expected); ++index) {
        const JunkRule& rule = rules[17 + index];
        const auto& row = expected[index];
        EXPECT_EQ(rule.id, row.id);
        EXPECT_EQ(rule.group, row.group) << rule.id;
        EXPECT_EQ(rule.risk, row.risk) << rule.id;
        EXPECT_EQ(rule.base, row.base) << rule.id;
        EXPECT_EQ(rule.inDataHome, row.inDataHome) << rule.id;
        EXPECT_EQ(rule.removal, row.removal) << rule.id;
        EXPECT_EQ(rule.inSmartClean, row.quick) << rule.id;
        EXPECT_EQ(rule.extensions, row.extensions) << rule.id;
        EXPECT_EQ(rule.minAgeDays, row.minAgeDays) << rule.id;
        EXPECT_TRUE(rule.excludedNames.empty()) << rule.id;
        EXPECT_TRUE(rule.explanation.ends_with('.')) << rule.id;
    }
    // The desktop's Trash reads as the Mac's does.
    EXPECT_EQ(rules[17].title, rules[4].title);
    EXPECT_EQ(rules[17].explanation, rules[4].explanation);
    // Only the two Trash rules empty a Trash.
    std::vector<std::string> trashes;
    for (const JunkRule& rule : rules) {
        if (emptiesATrash(rule)) {
            trashes.push_back(rule.id);
        }
    }
    EXPECT_EQ(trashes, (std::vector<std::string>{"trash", "desktop-trash"}));
}

TEST(JunkCatalogue, RuleFolders) {
    const auto& rules = JunkCatalogue::rules();
    const std::string data = "/Users/me/.local/share";
    EXPECT_EQ(ruleFolder(rules[0], "/Users/me", data), "/Users/me/Library/Caches");
    EXPECT_EQ(ruleFolder(rules[3], "/Users/me", data), "/Library/Logs");
    EXPECT_EQ(ruleFolder(rules[4], "/", data), "/.Trash");
    EXPECT_EQ(ruleFolder(rules[17], "/Users/me", "/data/"), "/data/Trash/files");
    EXPECT_EQ(ruleFolder(rules[19], "/Users/me", data), "/Users/me/.cargo/registry/cache");
}

TEST(JunkCatalogue, RuleCoveringAPath) {
    const struct {
        std::string path;
        std::optional<std::string_view> rule;
    } cases[] = {
        {"/Users/me/Library/Caches/com.example", "user-caches"},
        {"/Users/me/Library/Caches/com.example/a/b", "user-caches"},
        {"/Users/me/Library/Caches/", "user-caches"}, // no first name: nothing to exclude
        {"/Users/me/Library/Caches", std::nullopt},   // the folder itself is not under it
        {"/Users/me/Library/CachesX/a", std::nullopt},
        {"/Users/me/Library/Caches/CloudKit", std::nullopt},
        {"/Users/me/Library/Caches/CloudKit/x", std::nullopt},
        {"/Users/me/Library/Caches//CloudKit/x", std::nullopt},
        {"/Users/me/Library/Caches/com.apple.akd", std::nullopt},
        {"/Library/Logs/x", "system-logs"},
        {"/Users/me/.Trash/.DS_Store", "trash"},
        {"/Users/me/Downloads/a.DmG", "old-installers"},
        {"/Users/me/Downloads/a.xip/b.txt", "old-installers"},
        {"/Users/me/Downloads/a.zip", std::nullopt},
        {"/Users/me/Downloads/iso", std::nullopt},
        {"/Users/me/Downloads/.iso", std::nullopt},
        {"/Users/me/Downloads/a.iso.part", std::nullopt},
        {"/Users/me/.cache/pip/x", "dot-cache"},
        {"/Users/other/Library/Caches/x", std::nullopt},
        // the Linux rules, after the Mac's
        {"/data/Trash/files/report.pdf", "desktop-trash"},
        {"/data/Trash/files/.DS_Store", "desktop-trash"},
        {"/data/Trash/files", std::nullopt},
        {"/data/Trash/info/report.pdf.trashinfo", std::nullopt},
        {"/Users/me/.local/share/Trash/files/x", std::nullopt}, // the data folder is elsewhere
        {"/Users/me/Downloads/tool.AppImage", "linux-installers"},
        {"/Users/me/Downloads/code.deb", "linux-installers"},
        {"/Users/me/Downloads/app.flatpakref", "linux-installers"},
        {"/Users/me/Downloads/x.dmg", "old-installers"},
        {"/Users/me/Downloads/x.tar.xz", std::nullopt},
        {"/Users/me/.cargo/registry/cache/index.crates.io-6f17d22bba15001f", "cargo-cache"},
        {"/Users/me/.cargo/registry/src/x", std::nullopt},
    };
    for (const auto& [path, rule] : cases) {
        const JunkRule* found = JunkCatalogue::ruleCovering(path, "/Users/me", "/data");
        EXPECT_EQ(found ? std::optional<std::string_view>(found->id) : std::nullopt, rule) << path;
    }
}

} // namespace
} // namespace dorvik
