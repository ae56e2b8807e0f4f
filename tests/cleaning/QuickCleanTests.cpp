#include "catalogue/JunkCatalogue.h"
#include "cleaning/QuickClean.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik {
namespace {

TEST(QuickClean, TheRulesTickedAtFirst) {
    // Rules 1, 2, 3, 5 to 10 and 15 of the catalogue, and the desktop's Trash as the Mac's.
    EXPECT_EQ(
        QuickClean::defaultSelection(),
        (std::set<std::string>{"user-caches", "user-logs", "saved-state", "trash", "mail-downloads",
                               "xcode-derived", "xcode-device-support", "xcode-watch-support",
                               "simulator-caches", "ios-updates", "desktop-trash"}));
}

JunkFinding finding(const std::string& ruleID, const std::vector<std::string>& paths) {
    const auto& rules = JunkCatalogue::rules();
    const auto rule = std::ranges::find(rules, ruleID, &JunkRule::id);
    JunkFinding result{*rule, {}};
    int64_t size = 1000;
    for (const std::string& path : paths) {
        result.items.push_back(JunkItem{path, path, ruleID, size++, 1, std::nullopt});
    }
    return result;
}

TEST(QuickClean, EveryItemOfTheSelectedRulesGoesAsItsRuleSays) {
    const std::vector<JunkFinding> findings = {
        finding("trash", {"/h/.Trash/a", "/h/.Trash/b"}),
        finding("old-installers", {"/h/Downloads/x.dmg"}),
        finding("user-caches", {"/h/Library/Caches/c"}),
    };
    const struct {
        std::set<std::string> selection;
        std::vector<std::string> paths;
        std::vector<Removal> removals;
    } cases[] = {
        {QuickClean::defaultSelection(),
         {"/h/.Trash/a", "/h/.Trash/b", "/h/Library/Caches/c"},
         {Removal::permanent, Removal::permanent, Removal::permanent}},
        {{"old-installers", "trash"},
         {"/h/.Trash/a", "/h/.Trash/b", "/h/Downloads/x.dmg"},
         {Removal::permanent, Removal::permanent, Removal::trash}},
        {{}, {}, {}},
    };
    for (const auto& c : cases) {
        std::vector<std::string> paths;
        std::vector<Removal> removals;
        for (const DeletionRequest& request : QuickClean::requests(findings, c.selection)) {
            paths.push_back(request.path);
            removals.push_back(request.removal);
        }
        EXPECT_EQ(paths, c.paths);
        EXPECT_EQ(removals, c.removals);
    }
    EXPECT_EQ(QuickClean::requests(findings, {"trash"})[1].size, 1001);
}

} // namespace
} // namespace dorvik
