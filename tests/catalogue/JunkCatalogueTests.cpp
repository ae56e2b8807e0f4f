#include "catalogue/JunkCatalogue.h"

#include <gtest/gtest.h>

#include <string>

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
    ASSERT_EQ(rules.size(), std::size(expected));
    for (size_t index = 0; index < rules.size(); ++index) {
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

TEST(JunkCatalogue, RuleFolders) {
    const auto& rules = JunkCatalogue::rules();
    EXPECT_EQ(ruleFolder(rules[0], "/Users/me"), "/Users/me/Library/Caches");
    EXPECT_EQ(ruleFolder(rules[3], "/Users/me"), "/Library/Logs");
    EXPECT_EQ(ruleFolder(rules[4], "/"), "/.Trash");
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
    };
    for (const auto& [path, rule] : cases) {
        const JunkRule* found = JunkCatalogue::ruleCovering(path, "/Users/me");
        EXPECT_EQ(found ? std::optional<std::string_view>(found->id) : std::nullopt, rule) << path;
    }
}

} // namespace
} // namespace dorvik
