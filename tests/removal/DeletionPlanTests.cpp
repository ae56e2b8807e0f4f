// Plans, the requests a confirmation makes of them, and the toasts after a run.

#include "removal/DeletionPlan.h"
#include "removal/PlanTexts.h"
#include "removal/Toast.h"
#include "support/Environment.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <set>

namespace dorvik {
namespace {

PlanItem item(const std::string& path, Risk risk, int64_t size = 1,
              Removal removal = Removal::trash) {
    return PlanItem{path, path.substr(path.rfind('/') + 1), size, removal,
                    SafetyVerdict{risk, "because"}};
}

std::vector<std::string> paths(const std::vector<PlanItem>& items) {
    std::vector<std::string> result;
    for (const PlanItem& planned : items) {
        result.push_back(planned.path);
    }
    return result;
}

TEST(DeletionPlan, ChildrenOfItemsInThePlanAreLeftOut) {
    const struct {
        std::vector<std::string> selected;
        std::vector<std::string> kept;
    } cases[] = {
        {{"/u/a/file.txt", "/u/a"}, {"/u/a"}},
        {{"/u/a", "/u/a/b", "/u/a/b/c", "/u/z"}, {"/u/a", "/u/z"}},
        {{"/u/ab", "/u/a", "/u/a.txt"}, {"/u/ab", "/u/a", "/u/a.txt"}},
        {{"/u/x/deep/er", "/u/y", "/u/x"}, {"/u/y", "/u/x"}},
        // the same path twice is one item, listed and counted once
        {{"/u/same", "/u/other", "/u/same"}, {"/u/same", "/u/other"}},
    };
    for (const auto& c : cases) {
        std::vector<PlanItem> items;
        for (const std::string& path : c.selected) {
            items.push_back(item(path, Risk::review));
        }
        const auto plan = makePlan(items, "Delete Items");
        ASSERT_TRUE(plan);
        EXPECT_EQ(paths(plan->items), c.kept);
        EXPECT_EQ(plan->title, "Delete Items");
    }
    EXPECT_FALSE(makePlan({}, "Delete Items"));
    EXPECT_NE(makePlan({item("/u/a", Risk::safe)}, "t")->id,
              makePlan({item("/u/a", Risk::safe)}, "t")->id);
}

TEST(DeletionPlan, ItemsCarryTheVerdictOfTheirPath) {
    test::ScopedEnvironment home("HOME", "/Users/me");
    const PlanItem download = makePlanItem("/Users/me/Downloads/setup.zip", 42, Removal::trash);
    EXPECT_EQ(download.name, "setup.zip");
    EXPECT_EQ(download.size, 42);
    EXPECT_EQ(download.verdict.risk, Risk::safe);
    EXPECT_EQ(download.verdict.reason, "Download. Make sure you don\u2019t need it.");
    EXPECT_EQ(makePlanItem("/System/Library", 1, Removal::trash).verdict.risk, Risk::protected_);
    EXPECT_EQ(makePlanItem("/Users/me/notes.txt", 1, Removal::permanent).removal,
              Removal::permanent);
}

// ".." after a link leads where the system goes: into the link's target's parent, not back
// along the text. The plan names, and the verdict judges, the path the removal would act on.
TEST(DeletionPlan, ItemsNameThePathTheSystemWouldActOn) {
    test::TempDir dir;
    test::ScopedEnvironment home("HOME", dir / "home");
    test::writeText(dir / "real/deep/old.txt", "deep");
    test::writeText(dir / "real/old.txt", "shallow");
    test::makeFolder(dir / "real/deep/dir");
    test::makeSymlink(dir / "real/deep/dir", dir / "lnk");
    test::makeSymlink(dir / "real/deep", dir / "item-link");
    const struct {
        std::string given;
        std::string planned;
    } cases[] = {
        {dir / "lnk/../old.txt", dir / "real/deep/old.txt"},
        {dir / "real/./deep//old.txt", dir / "real/deep/old.txt"},
        {dir / "real/deep/../old.txt", dir / "real/old.txt"},
        {dir / "lnk/../dir", dir / "real/deep/dir"},
        // the item itself is not followed
        {dir / "item-link", dir / "item-link"},
        {dir / "real/missing/../x", dir / "real/x"},
    };
    for (const auto& c : cases) {
        const PlanItem planned = makePlanItem(c.given, 1, Removal::trash);
        EXPECT_EQ(planned.path, c.planned) << c.given;
        EXPECT_EQ(planned.name, c.planned.substr(c.planned.rfind('/') + 1)) << c.given;
    }
}

TEST(DeletionPlan, OnlyWhatWasConfirmedBecomesARequest) {
    const DeletionPlan plan{"id",
                            "Clean Junk",
                            {item("/s/cache", Risk::safe, 10, Removal::permanent),
                             item("/s/archive", Risk::review, 20, Removal::trash),
                             item("/s/keychain", Risk::protected_, 40, Removal::trash),
                             item("/s/download", Risk::safe, 80, Removal::trash),
                             item("/s/org.example.App", Risk::review, 5, Removal::uninstall)}};
    const struct {
        bool includeReview;
        bool permanentDelete;
        std::vector<std::string> paths;
        std::vector<Removal> removals;
        int64_t total;
    } cases[] = {
        {false, false, {"/s/cache", "/s/download"}, {Removal::permanent, Removal::trash}, 90},
        {true,
         false,
         {"/s/cache", "/s/archive", "/s/download", "/s/org.example.App"},
         {Removal::permanent, Removal::trash, Removal::trash, Removal::uninstall},
         115},
        // Bypassing the Trash leaves an uninstall as it is.
        {true,
         true,
         {"/s/cache", "/s/archive", "/s/download", "/s/org.example.App"},
         {Removal::permanent, Removal::permanent, Removal::permanent, Removal::uninstall},
         115},
        {false, true, {"/s/cache", "/s/download"}, {Removal::permanent, Removal::permanent}, 90},
    };
    for (const auto& c : cases) {
        const auto requests = planRequests(plan, c.includeReview, c.permanentDelete);
        std::vector<std::string> requested;
        std::vector<Removal> removals;
        std::set<std::string> ids;
        for (const DeletionRequest& request : requests) {
            requested.push_back(request.path);
            removals.push_back(request.removal);
            ids.insert(request.id);
        }
        EXPECT_EQ(requested, c.paths);
        EXPECT_EQ(removals, c.removals);
        EXPECT_EQ(ids.size(), requests.size());
        EXPECT_EQ(plannedTotal(plan, c.includeReview), c.total);
    }
    EXPECT_EQ(planRequests(plan, false, false)[1].size, 80);

    const auto lists = itemsByRisk(plan);
    EXPECT_EQ(paths(lists[0]), (std::vector<std::string>{"/s/cache", "/s/download"}));
    EXPECT_EQ(paths(lists[1]), (std::vector<std::string>{"/s/archive", "/s/org.example.App"}));
    EXPECT_EQ(paths(lists[2]), std::vector<std::string>{"/s/keychain"});
    // A plan of review items alone sends nothing until they are accepted.
    const DeletionPlan reviewOnly{"id", "Delete Items", {item("/s/archive", Risk::review, 20)}};
    EXPECT_TRUE(planRequests(reviewOnly, false, false).empty());
    EXPECT_EQ(plannedTotal(reviewOnly, false), 0);
}

HistoryEntry historyEntry(const std::string& path, std::optional<std::string> trashPath) {
    return HistoryEntry{"id-" + path, 1e9, path, std::move(trashPath), 1, false};
}

TEST(Toast, AfterARunTheFiguresStayApart) {
    const DeletionFailure refused{"f", "/x", "No longer exists."};
    const struct {
        int64_t freed;
        int64_t moved;
        size_t deleted;
        size_t failures;
        size_t skipped;
        std::string message;
        std::optional<std::string> detail;
        bool warning; // drawn with a warning sign, not a check
    } cases[] = {
        {2'000'000'000, 1'000'000'000, 3, 1, 1, "2 GB freed \u00B7 1 GB in the Trash",
         "2 item(s) couldn't be deleted. Details in History.", true},
        {0, 0, 0, 2, 1, "Nothing was deleted", "3 item(s) couldn't be deleted. Details in History.",
         true},
        {0, 0, 2, 0, 0, "Zero KB freed", std::nullopt, false},
        {1'500'000, 0, 1, 0, 0, "1.5 MB freed", std::nullopt, false},
        {0, 250'000, 1, 0, 0, "250 KB moved to the Trash", std::nullopt, false},
        {0, 0, 0, 0, 0, "Nothing was deleted", std::nullopt, true},
    };
    for (const auto& c : cases) {
        DeletionReport report;
        report.freed = c.freed;
        report.movedToTrash = c.moved;
        report.deletedPaths.assign(c.deleted, "/gone");
        report.failures.assign(c.failures, refused);
        report.skippedProtected.assign(c.skipped, refused);
        const Toast toast = deletionToast(report, {});
        EXPECT_EQ(toast.message, c.message);
        EXPECT_EQ(toast.detail, c.detail);
        EXPECT_EQ(toast.warning, c.warning) << c.message;
        EXPECT_TRUE(toast.undoable.empty());
    }
    // A folder that went in part is not "nothing".
    DeletionReport partial;
    partial.failures = {refused, refused};
    partial.partlyDeletedPaths = {"/x"};
    const Toast partialToast = deletionToast(partial, {});
    EXPECT_EQ(partialToast.message, "1 item(s) only partly deleted");
    EXPECT_EQ(partialToast.detail, "2 item(s) couldn't be deleted. Details in History.");
    // Where the failures are listed on the spot, the detail does not send the user elsewhere.
    const Toast listed = deletionToast(partial, {}, FailureDetails::listedBelow);
    EXPECT_EQ(listed.detail, "2 item(s) couldn't be deleted:");

    const std::vector<HistoryEntry> entries = {
        historyEntry("/a", "/t/a"), historyEntry("/b", std::nullopt), historyEntry("/c", "/t/c")};
    DeletionReport report;
    report.deletedPaths = {"/a", "/b", "/c"};
    const Toast toast = deletionToast(report, entries);
    EXPECT_EQ(toast.undoable, (std::vector<HistoryEntry>{entries[0], entries[2]}));
    EXPECT_NE(toast.id, deletionToast(report, entries).id);
}

TEST(Toast, AfterAnUndoTheCountAlone) {
    for (const int count : {0, 1, 12}) {
        const Toast toast = undoToast(count);
        EXPECT_EQ(toast.message, std::to_string(count) + " item(s) restored");
        EXPECT_EQ(toast.detail, "Scan again to see updated sizes.");
        EXPECT_TRUE(toast.undoable.empty());
    }
}

TEST(PlanTexts, TheSettingDecidesTheWords) {
    EXPECT_EQ(PlanTexts::headline(true),
              "These will be deleted permanently. They can't be recovered.");
    EXPECT_EQ(PlanTexts::headline(false), "They'll go to the Trash (regenerable caches are "
                                          "deleted directly). You can undo this from History.");
    EXPECT_EQ(PlanTexts::confirmButton(true), "Delete Permanently");
    EXPECT_EQ(PlanTexts::confirmButton(false), "Delete");
    EXPECT_EQ(PlanTexts::reviewConsent(2),
              "I\u2019ve reviewed the 2 item(s) marked **Review** and want to delete them");
    EXPECT_EQ(PlanTexts::protectedNote(1), "1 protected item(s) won\u2019t be touched.");
}

} // namespace
} // namespace dorvik

namespace dorvik {
namespace {

TEST(DeletionPlan, APlanThatUninstallsSaysThatPartHasNoWayBack) {
    const PlanItem app = item("/s/org.example.App", Risk::review, 5, Removal::uninstall);
    const PlanItem data = item("/s/data", Risk::review, 5, Removal::trash);
    PlanItem refusedApp = app;
    refusedApp.verdict.risk = Risk::protected_;
    EXPECT_TRUE(PlanTexts::uninstallNote({"id", "Uninstall App", {app, data}}).has_value());
    EXPECT_FALSE(PlanTexts::uninstallNote({"id", "Uninstall App", {data}}).has_value());
    // An app the rules refuse is not uninstalled, so nothing is said of it.
    EXPECT_FALSE(PlanTexts::uninstallNote({"id", "Uninstall App", {refusedApp, data}}).has_value());
}

} // namespace
} // namespace dorvik
