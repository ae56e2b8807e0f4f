#include "apps/UninstallPlan.h"
#include "removal/SafetyRules.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

TEST(UninstallPlan, BundleThenRelatedItemsAllToTheTrashWithTheirVerdicts) {
    test::TestHome testHome;
    const std::string bundle = testHome.home + "/Applications/Writer.app";
    InstalledApp app;
    app.path = bundle;
    app.name = "Writer Pro";
    app.appSize = 5000;
    EXPECT_EQ(uninstallPlanItems(app).size(), 1u);
    EXPECT_EQ(uninstallTitle(app), "Uninstall Writer Pro");

    app.related = {
        {testHome.home + "/Library/Caches/com.example.writer", "Caches", 3000},
        // A related item in a protected place stands in the plan with the verdict it earns.
        {testHome.home + "/Library/Keychains", "Application Support", 10},
    };
    const auto items = uninstallPlanItems(app);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].path, bundle);
    EXPECT_EQ(items[0].name, "Writer Pro");
    EXPECT_EQ(items[0].size, 5000);
    EXPECT_EQ(items[1].name, "Caches · com.example.writer");
    EXPECT_EQ(items[1].size, 3000);
    EXPECT_EQ(items[2].name, "Application Support · Keychains");
    for (const PlanItem& item : items) {
        EXPECT_EQ(item.removal, Removal::trash);
        EXPECT_EQ(item.verdict, SafetyRules::verdict(item.path)) << item.path;
    }
    EXPECT_EQ(items[0].verdict.risk, Risk::review);
    EXPECT_EQ(items[2].verdict.risk, Risk::protected_);

    const RemovedApp removed{"Writer", "com.example.writer", app.related};
    EXPECT_EQ(removedAppPlanItems(removed), std::vector<PlanItem>(items.begin() + 1, items.end()));
    EXPECT_EQ(removedAppTitle(removed), "Leftovers of Writer");
}

TEST(UninstallPlan, AFlatpakAppIsUninstalledAndItsDataGoesToTheTrash) {
    test::TestHome testHome;
    InstalledApp app;
    app.path = testHome.dataHome + "/flatpak/app/org.example.Tool";
    app.name = "Toolbox";
    app.related = {{testHome.home + "/.var/app/org.example.Tool/data", "Sandbox Data", 10}};
    const auto items = uninstallPlanItems(app);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].removal, Removal::uninstall);
    EXPECT_EQ(items[0].verdict.risk, Risk::review);
    EXPECT_EQ(items[1].removal, Removal::trash);
    EXPECT_EQ(items[1].name, "Sandbox Data · data");
}

} // namespace
} // namespace dorvik
