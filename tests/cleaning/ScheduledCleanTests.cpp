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
    const auto item = [](std::string path, std::string ruleID, int64_t size) {
        return JunkItem{.id = path,
                        .url = path,
                        .ruleID = std::move(ruleID),
                        .size = size,
                        .fileCount = 1,
                        .modified = std::nullopt};
    };
    const std::vector<JunkFinding> findings = {
        {rule("user-caches"), {item("/h/Library/Caches/a", "user-caches", 10)}},
        {rule("trash"), {item("/h/.Trash/b", "trash", 20)}},
        {rule("ios-backups"), {item("/h/Backup/c", "ios-backups", 30)}},
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
