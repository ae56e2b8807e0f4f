// The Trends page as a user meets it: learning, then a forecast with its chart; "What changed"
// with no scan, one and several, its baseline picked, and its rows opening their folders.

#include "UiTest.h"
#include "base/Dates.h"
#include "support/TestHome.h"
#include "trends/TrendStore.h"
#include "trends/TrendTexts.h"
#include "ui/QtText.h"
#include "ui/pages/trends/ChangesCard.h"
#include "ui/pages/trends/ForecastCardView.h"
#include "ui/pages/trends/SpaceChartView.h"
#include "ui/pages/trends/TrendsView.h"
#include "ui/widgets/RowButton.h"

#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>

namespace dorvik {
namespace {

using test::settle;
using test::showsText;

constexpr double day = 86400;

class TrendsViewTest : public test::UiTest {
protected:
    test::TestHome place;
    std::string home = place.home;
};

TEST_F(TrendsViewTest, LearnsThenForecastsWithItsChart) {
    const double now = Dates::now();
    auto state = makeState();
    ASSERT_TRUE(state->volume());
    TrendsView view(*state);
    view.resize(1000, 900);
    view.show();
    ForecastCardView* card = view.forecast();
    EXPECT_EQ(card->title()->text(), shownText(TrendTexts::learningTitle));
    EXPECT_TRUE(card->learning()->isVisibleTo(&view));
    EXPECT_FALSE(card->chart()->isVisibleTo(&view));

    // Samples of a disk filling by 2 GB a day over ten days, as the hourly tick would leave them.
    VolumeInfo volume = *state->volume();
    for (int i = 10; i >= 0; --i) {
        volume.available = state->volume()->available + int64_t{2'000'000'000} * i;
        state->trends().recordSample(volume, now - i * day);
    }
    view.refresh();
    EXPECT_FALSE(card->learning()->isVisibleTo(&view));
    EXPECT_TRUE(card->title()->text().startsWith("Full in ") ||
                card->title()->text() == "Your disk is about to fill up")
        << card->title()->text().toStdString();
    ASSERT_TRUE(card->chart()->isVisibleTo(&view));
    EXPECT_EQ(card->chart()->height(), 220);
    EXPECT_EQ(card->chart()->data().history.size(), 11u);
    EXPECT_EQ(card->chart()->data().projection.size(), 2u);
    EXPECT_FALSE(card->chart()->grab().isNull());
}

TEST_F(TrendsViewTest, WhatChangedFromNoScanToAComparisonWithAPickedBaseline) {
    const double now = Dates::now();
    test::writeAllocatedFile(home + "/Videos/trip/raw.mov", 20'000'000);
    auto state = makeState();
    TrendsView view(*state);
    view.resize(1000, 900);
    view.show();
    ChangesCard* changes = view.changes();
    EXPECT_EQ(changes->message()->text(), shownText(TrendTexts::noHistoryText));
    ASSERT_TRUE(changes->scanButton()->isVisibleTo(&view));
    EXPECT_FALSE(changes->baselineMenu()->isVisibleTo(&view));

    scanFolder(*state, home);
    view.refresh();
    EXPECT_TRUE(changes->message()->text().startsWith("First measurement saved today."));
    EXPECT_FALSE(changes->scanButton()->isVisibleTo(&view));

    // Two earlier scans of the same folder: a week ago Videos held 3 GB more, yesterday 1 GB less.
    const ScanSnapshot current = state->trends().history(home).front();
    const std::string videos = home + "/Videos";
    const std::string trip = videos + "/trip";
    auto earlier = [&](std::string id, double age, int64_t tripChange) {
        ScanSnapshot snapshot = current;
        snapshot.id = std::move(id);
        snapshot.date = now - age;
        for (const std::string& path : {home, videos, trip}) {
            snapshot.folders[path] = current.folders.at(path) + tripChange;
        }
        snapshot.total = snapshot.folders[home];
        return snapshot;
    };
    TrendStore& store = state->trends();
    store.record(earlier("1B0E3C4D-2A5F-4E6B-8C7D-9E0F1A2B3C4D", 7 * day, 3'000'000'000));
    store.record(earlier("5D6E7F80-9A1B-4C2D-8E3F-4A5B6C7D8E9F", day, -1'000'000'000));
    store.record(current); // the newest again, recorded after the older ones
    view.refresh();

    ASSERT_TRUE(changes->baselineMenu()->isVisibleTo(&view));
    EXPECT_EQ(changes->baselineMenu()->text(), "Since yesterday");
    EXPECT_EQ(changes->baselineMenu()->menu()->actions().size(), 2);
    ASSERT_EQ(changes->changes().size(), 1u);
    EXPECT_EQ(changes->changes()[0].path, trip);
    EXPECT_EQ(changes->changes()[0].change(), 1'000'000'000);

    changes->baselineMenu()->menu()->actions()[1]->trigger();
    EXPECT_TRUE(changes->baselineMenu()->text().startsWith("Since "));
    ASSERT_EQ(changes->changes().size(), 1u);
    EXPECT_EQ(changes->changes()[0].change(), -3'000'000'000);

    // The row opens the folder in the explorer: the scan holds it.
    state->setSection(AppSection::trends);
    ASSERT_EQ(changes->rows().size(), 1u);
    changes->rows()[0]->click();
    EXPECT_EQ(state->section(), AppSection::explorer);
    EXPECT_EQ(state->explorerStack().back()->name, "trip");
}

} // namespace
} // namespace dorvik
