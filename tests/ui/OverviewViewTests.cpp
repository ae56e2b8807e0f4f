// The Overview as a user meets it: the invitation before a scan; after one, the header, the
// figures, the composition, the recommendations (pressed) and the largest folders, in a home of
// the test's own with junk in it.

#include "UiTest.h"
#include "base/Dates.h"
#include "base/TextForms.h"
#include "support/TestHome.h"
#include "trends/TrendStore.h"
#include "ui/QtText.h"
#include "ui/pages/overview/CompositionCard.h"
#include "ui/pages/overview/OverviewCards.h"
#include "ui/pages/overview/OverviewView.h"
#include "ui/pages/trends/TrendTeaser.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/RowButton.h"
#include "ui/widgets/StatTile.h"

namespace dorvik {
namespace {

using test::settle;
using test::showsText;
using test::waitUntil;

class OverviewViewTest : public test::UiTest {
protected:
    test::TestHome place;
    std::string home = place.home;

    void loadJunk(AppState& state) {
        state.junk().load();
        ASSERT_TRUE(waitUntil([&] { return !state.junk().isLoading(); }));
        settle();
    }
};

std::vector<QString> titlesOf(const std::vector<StatTile*>& tiles) {
    std::vector<QString> titles;
    for (const StatTile* tile : tiles) {
        titles.push_back(tile->title());
    }
    return titles;
}

TEST_F(OverviewViewTest, InvitesAScanThenShowsTheScanAndWhatToDoFirst) {
    test::writeAllocatedFile(home + "/.Trash/old.bin", 60'000'000);
    test::writeAllocatedFile(home + "/Downloads/Tool.dmg", 3'000'000);
    test::setModificationTime(home + "/Downloads/Tool.dmg", 1'600'000'000);
    test::writeAllocatedFile(home + "/Videos/trip/raw.mov", 210'000'000);
    auto state = makeState();
    OverviewView view(*state);
    view.resize(1100, 1400);
    view.show();
    EXPECT_TRUE(view.showsScanPrompt());
    EXPECT_TRUE(showsText(&view, shownText("What’s taking up your disk?")));

    scanFolder(*state, home);
    loadJunk(*state);
    EXPECT_FALSE(view.showsScanPrompt());
    const ScanResult& scan = *state->scan();
    EXPECT_TRUE(view.header()->subtitle().startsWith(qtText(TextForms::count(scan.totalFiles)) +
                                                     QStringLiteral(" files in ")))
        << view.header()->subtitle().toStdString();
    EXPECT_TRUE(view.header()->subtitle().endsWith(QStringLiteral("Scanned today")));
    EXPECT_FALSE(view.restoredNote()->isVisibleTo(&view));

    // This volume tells nothing purgeable: no such tile.
    EXPECT_EQ(titlesOf(view.stats()->tiles()), (std::vector<QString>{"Used", "Free", "Scanned"}));
    EXPECT_EQ(view.stats()->tiles()[2]->value(), qtText(TextForms::size(scan.root->size)));
    EXPECT_FALSE(view.teaser()->isVisibleTo(&view)); // one scan: no history to tease

    // Video first; what the scan did not reach last, and it leads nowhere.
    const auto& rows = view.composition()->legendRows();
    ASSERT_GE(rows.size(), 2u);
    EXPECT_TRUE(showsText(rows.front(), shownText("Video")));
    EXPECT_TRUE(showsText(rows.back(), shownText("macOS and other")));
    EXPECT_EQ(dynamic_cast<RowButton*>(rows.back()), nullptr);
    dynamic_cast<RowButton*>(rows.front())->click();
    EXPECT_EQ(state->section(), AppSection::large);
    EXPECT_EQ(state->largeFilter().bucket, StorageBucket::video);

    ASSERT_EQ(view.recommendations()->rows().size(), 2u);
    EXPECT_FALSE(view.recommendations()->nothing()->isVisibleTo(&view));
    EXPECT_TRUE(showsText(view.recommendations()->rows()[0], "Empty the Trash"));
    EXPECT_TRUE(showsText(view.recommendations()->rows()[1], "Forgotten installers"));
    view.recommendations()->rows()[0]->click();
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->title, "Empty the Trash");

    ASSERT_EQ(view.biggestFolders()->rows().size(), 1u);
    EXPECT_TRUE(showsText(view.biggestFolders()->rows()[0], "trip"));
    view.biggestFolders()->rows()[0]->click();
    EXPECT_EQ(state->section(), AppSection::explorer);
    EXPECT_EQ(state->explorerStack().back()->name, "trip");
}

TEST_F(OverviewViewTest, AHomeWithNothingToDoSaysSoAndTheTeaserLeadsToTheTrends) {
    test::writeAllocatedFile(home + "/Documents/a.txt", 1'000'000);
    // A scan of the same folder two days ago, of a single byte.
    TrendStore().record({"0E6C1D56-5B9A-4C3B-9F0D-2F5A7C1E9B11",
                         Dates::now() - 2 * 86400,
                         home,
                         1,
                         {},
                         {{home, 1}}});
    auto state = makeState();
    OverviewView view(*state);
    view.resize(1100, 1400);
    view.show();
    scanFolder(*state, home);
    loadJunk(*state);
    EXPECT_TRUE(view.recommendations()->rows().empty());
    EXPECT_TRUE(view.recommendations()->nothing()->isVisibleTo(&view));
    EXPECT_TRUE(showsText(&view, "Nothing urgent. Nice work!"));

    ASSERT_TRUE(view.teaser()->isVisibleTo(&view));
    EXPECT_EQ(view.teaser()->text()->text(),
              "Since the scan 2 days ago: " +
                  qtText(TextForms::signedSize(state->scan()->root->size - 1)));
    view.teaser()->press();
    EXPECT_EQ(state->section(), AppSection::trends);
}

} // namespace
} // namespace dorvik
