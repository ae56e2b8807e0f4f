// What the scheduled clean may take unattended, over the whole catalogue.

#include "catalogue/JunkCatalogue.h"
#include "cleaning/ScheduledClean.h"

#include <gtest/gtest.h>

#include <set>

namespace dorvik {
namespace {

TEST(ScheduledClean, TakesOnlySafePermanentQuickCleanRulesAndNeverATrash) {
    std::set<std::string> taken;
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        if (ScheduledClean::mayCleanUnattended(rule)) {
            taken.insert(rule.id);
        }
    }
    const std::set<std::string> expected = {
        "user-caches",         "user-logs",        "saved-state",
        "mail-downloads",      "xcode-derived",    "xcode-device-support",
        "xcode-watch-support", "simulator-caches", "ios-updates",
    };
    EXPECT_EQ(taken, expected);
}

TEST(ScheduledClean, RequestsArePermanentAndOnlyForRulesItMayTake) {
    const auto rule = [](std::string_view id) {
        for (const JunkRule& candidate : JunkCatalogue::rules()) {
            if (candidate.id == id) {
                return candidate;
            }
        }
        ADD_FAILURE() << id;
        return JunkRule{};
    };
    const std::vector<JunkFinding> findings = {
        {rule("user-caches"), {{"/h/Library/Caches/a", "/h/Library/Caches/a", "user-caches", 10}}},
        {rule("trash"), {{"/h/.Trash/b", "/h/.Trash/b", "trash", 20}}},
        {rule("ios-backups"), {{"/h/Backup/c", "/h/Backup/c", "ios-backups", 30}}},
    };
    const std::vector<DeletionRequest> requests = ScheduledClean::requests(findings);
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].path, "/h/Library/Caches/a");
    EXPECT_EQ(requests[0].size, 10);
    EXPECT_EQ(requests[0].removal, Removal::permanent);
    EXPECT_FALSE(requests[0].id.empty());
}

} // namespace
} // namespace dorvik
