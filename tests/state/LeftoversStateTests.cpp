// The leftovers search and the removed-app banner's state under a real event loop, each test
// with its own home and application folders.

#include "removal/SafetyRules.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/Bundles.h"
#include "support/Environment.h"
#include "support/EventLoop.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <QSettings>
#include <gtest/gtest.h>

#include <memory>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

class LeftoversStateTest : public testing::Test, protected test::TestHome {
protected:
    test::TempDir system;
    test::ScopedEnvironment root{"DORVIK_SYSTEM_ROOT", system.path()};
    std::unique_ptr<AppState> state;
    std::string caches = home + "/Library/Caches";

    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        test::writeFile(caches + "/com.example.gone/blob", 400'000);
        test::writeFile(caches + "/com.example.writer/blob", 300'000);
        test::writeInfoPlist(system.path() + "/Applications/Writer.app",
                             {{"CFBundleIdentifier", "com.example.writer"}});
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
    }
    void TearDown() override {
        settle();
        state.reset();
    }
};

// A refresh asks for the installed identifiers once, searches on a worker, and a second refresh
// while it runs does nothing.
TEST_F(LeftoversStateTest, RefreshIsGuardedAndRunsOffTheMainThread) {
    LeftoversState& leftovers = state->leftovers();
    int asked = 0;
    leftovers.setInstalledIdentifiers([&asked] {
        ++asked;
        return std::vector<std::string>{"com.example.writer"};
    });
    int loadingChanges = 0;
    QObject::connect(&leftovers, &LeftoversState::loadingChanged, [&] { ++loadingChanges; });
    EXPECT_FALSE(leftovers.hasSearched());
    leftovers.refresh();
    EXPECT_TRUE(leftovers.isLoading());
    leftovers.refresh();
    ASSERT_TRUE(waitUntil([&] { return !leftovers.isLoading(); }));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(loadingChanges, 2);
    EXPECT_TRUE(leftovers.hasSearched());
    // The locations' labels never pass the search's first test, so a real Library gives no row,
    // not even for an identifier nothing claims.
    EXPECT_TRUE(leftovers.leftovers().empty());
    leftovers.refresh();
    ASSERT_TRUE(waitUntil([&] { return !leftovers.isLoading(); }));
    EXPECT_EQ(asked, 2);
}

TEST_F(LeftoversStateTest, SelectedLeftoversBecomeThePlanDeleteAppLeftovers) {
    const std::vector<Leftover> selected = {
        {caches + "/com.example.gone", "com.example.gone", "Library/Caches", 409'600, {}},
        {caches + "/com.example.gone/blob", "blob", "Library/Caches", 401'408, {}},
        {home + "/Library/Preferences/org.example.old.plist", "org.example.old",
         "Library/Preferences", 90'112, 1.6e9},
    };
    state->leftovers().setLeftovers(selected);
    state->leftovers().proposeRemoval(selected);
    ASSERT_TRUE(state->removal().plan());
    const DeletionPlan& plan = *state->removal().plan();
    EXPECT_EQ(plan.title, "Delete App Leftovers");
    // The file inside the folder is dropped: the folder takes it.
    ASSERT_EQ(plan.items.size(), 2u);
    EXPECT_EQ(plan.items[0].path, caches + "/com.example.gone");
    EXPECT_EQ(plan.items[0].name, "com.example.gone");
    EXPECT_EQ(plan.items[0].size, 409'600);
    EXPECT_EQ(plan.items[1].name, "org.example.old.plist");
    for (const PlanItem& item : plan.items) {
        EXPECT_EQ(item.removal, Removal::trash);
        EXPECT_EQ(item.verdict, SafetyRules::verdict(item.path));
    }
    state->removal().execute(plan, true);
    ASSERT_TRUE(waitUntil([&] { return !test::entryExists(caches + "/com.example.gone"); }));
    settle();
    EXPECT_TRUE(test::entryExists(trashFiles + "/com.example.gone"));
    // What went leaves the list, with what lay inside it; the missing file stays.
    ASSERT_EQ(state->leftovers().leftovers().size(), 1u);
    EXPECT_EQ(state->leftovers().leftovers()[0].identifier, "org.example.old");
}

TEST_F(LeftoversStateTest, TheBannerProposesLeftoversOfTheAppAndGoes) {
    RemovedAppState& banner = state->removedApp();
    int changes = 0;
    QObject::connect(&banner, &RemovedAppState::removedAppChanged, [&] { ++changes; });
    banner.reviewAndRemove();
    EXPECT_FALSE(state->removal().plan()) << "nothing reported, nothing proposed";

    const RemovedApp gone{
        "Gone App",
        "com.example.gone",
        {{caches + "/com.example.gone", "Caches", 409'600},
         {home + "/Library/Preferences/com.example.gone.plist", "Preferences", 4'096}}};
    banner.report(gone);
    EXPECT_EQ(changes, 1);
    ASSERT_TRUE(banner.removedApp());
    EXPECT_EQ(*banner.removedApp(), gone);

    banner.reviewAndRemove();
    EXPECT_FALSE(banner.removedApp());
    EXPECT_EQ(changes, 2);
    ASSERT_TRUE(state->removal().plan());
    const DeletionPlan& plan = *state->removal().plan();
    EXPECT_EQ(plan.title, "Leftovers of Gone App");
    ASSERT_EQ(plan.items.size(), 2u);
    EXPECT_EQ(plan.items[0].name, "Caches · com.example.gone");
    EXPECT_EQ(plan.items[0].size, 409'600);
    EXPECT_EQ(plan.items[1].name, "Preferences · com.example.gone.plist");
    for (const PlanItem& item : plan.items) {
        EXPECT_EQ(item.removal, Removal::trash);
        EXPECT_EQ(item.verdict, SafetyRules::verdict(item.path));
    }
}

TEST_F(LeftoversStateTest, NotNowClearsTheBannerAndProposesNothing) {
    RemovedAppState& banner = state->removedApp();
    banner.report({"Old", "com.example.old", {{caches + "/com.example.old", "Caches", 6'000'000}}});
    // A newer report takes the place of the one on show.
    banner.report({"Gone", "com.example.gone", {{caches + "/com.example.gone", "Caches", 1}}});
    ASSERT_TRUE(banner.removedApp());
    EXPECT_EQ(banner.removedApp()->name, "Gone");
    banner.dismiss();
    EXPECT_FALSE(banner.removedApp());
    EXPECT_FALSE(state->removal().plan());
}

} // namespace
} // namespace dorvik
