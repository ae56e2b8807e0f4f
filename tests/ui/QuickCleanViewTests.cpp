// The Quick Clean page in the real window, over the real junk finder and removal engine, in a
// home of the test's own.

#include "UiTest.h"
#include "base/TextForms.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TestHome.h"
#include "ui/Appearance.h"
#include "ui/QtText.h"
#include "ui/pages/quickclean/DoneStage.h"
#include "ui/pages/quickclean/IdleStage.h"
#include "ui/pages/quickclean/QuickCleanView.h"
#include "ui/pages/quickclean/ReviewStage.h"
#include "ui/pages/quickclean/StepIndicator.h"
#include "ui/pages/quickclean/WorkingStage.h"
#include "ui/shell/RootView.h"
#include "ui/shell/ToastView.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <gtest/gtest.h>

namespace dorvik {
namespace {

using namespace std::chrono_literals;
using test::settle;
using test::waitUntil;

class QuickCleanViewTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override { QSettings(settingsOrganisation, settingsApplication).clear(); }
    void TearDown() override {
        settle();
        window.reset();
        state.reset();
    }

    void openPage(bool hasAccess = true) {
        AppStateOptions options;
        options.accessProbe = [hasAccess] { return hasAccess; };
        options.quickCleanPacing = {300ms, 300ms};
        state = std::make_unique<AppState>(options);
        settle();
        window = std::make_unique<RootView>(*state, appearance, 5s);
        window->resize(1100, 720);
        window->show();
        page = dynamic_cast<QuickCleanView*>(window->page(AppSection::smartClean));
        ASSERT_NE(page, nullptr);
        ASSERT_EQ(window->currentPage(), page);
    }

    void click(QAbstractButton* button) {
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(6, 6));
    }

    void waitForPhase(SmartPhase phase) {
        ASSERT_TRUE(waitUntil([&] { return state->quickClean().phase() == phase; }));
        settle();
    }

    QString sizeText(int64_t bytes) const { return qtText(TextForms::size(bytes)); }

    AppearanceController appearance{QApplication::palette()};
    std::unique_ptr<AppState> state;
    std::unique_ptr<RootView> window;
    QuickCleanView* page = nullptr;
};

TEST_F(QuickCleanViewTest, TheStagesFollowARunThatGoesOnWhileThePageIsLeft) {
    test::writeFile(home + "/Library/Caches/com.example.app/blob", 300000);
    test::writeFile(home + "/Library/Logs/app.log", 50000);
    test::writeFile(home + "/Downloads/Setup.dmg", 120000);
    test::setModificationTime(home + "/Downloads/Setup.dmg", 1'600'000'000);
    openPage();
    EXPECT_EQ(page->currentStage(), page->idleStage());
    EXPECT_FALSE(page->steps()->isVisible());
    EXPECT_TRUE(page->idleStage()->message()->text().startsWith("You have "));

    click(page->idleStage()->scanButton());
    EXPECT_EQ(page->currentStage(), page->workingStage());
    EXPECT_EQ(page->workingStage()->title(), "Looking for files you don’t need…");
    EXPECT_EQ(page->workingStage()->subtitle(),
              "Caches, logs, Trash, Xcode leftovers, Mail attachments…");
    EXPECT_EQ(page->steps()->current(), 0);

    // Away and back: the run went on without the page.
    state->setSection(AppSection::history);
    waitForPhase(SmartPhase::review);
    state->setSection(AppSection::smartClean);
    EXPECT_EQ(page->currentStage(), page->reviewStage());
    EXPECT_EQ(page->steps()->current(), 1);

    ReviewStage* review = page->reviewStage();
    const auto& checks = review->ruleCheckBoxes();
    ASSERT_TRUE(checks.contains("user-logs") && checks.contains("old-installers"));
    EXPECT_TRUE(checks.at("user-logs")->isChecked());
    EXPECT_FALSE(checks.at("old-installers")->isChecked());
    const int64_t before = state->quickClean().selectedTotal();
    EXPECT_EQ(review->sum()->text(), sizeText(before) + " ready to clean");
    EXPECT_EQ(review->cleanButton()->text(), "Clean " + sizeText(before));
    click(checks.at("user-logs"));
    const int64_t after = state->quickClean().selectedTotal();
    EXPECT_LT(after, before);
    EXPECT_EQ(review->sum()->text(), sizeText(after) + " ready to clean");
    EXPECT_EQ(review->cleanButton()->text(), "Clean " + sizeText(after));

    click(review->cleanButton());
    EXPECT_EQ(page->currentStage(), page->workingStage());
    EXPECT_EQ(page->workingStage()->title(), "Cleaning…");
    EXPECT_EQ(page->steps()->current(), 2);
    waitForPhase(SmartPhase::done);
    DoneStage* done = page->doneStage();
    EXPECT_EQ(page->currentStage(), done);
    EXPECT_EQ(done->headline()->text(), sizeText(after) + " cleaned");
    // Permanent rules only: no Trash line, and the toast stands beside the stage.
    EXPECT_FALSE(done->trashLine()->isVisibleTo(page));
    EXPECT_FALSE(done->leftOverLine()->isVisibleTo(page));
    EXPECT_EQ(done->freeSpaceLine()->isVisibleTo(page), state->volume().has_value());
    EXPECT_TRUE(window->toast()->isVisible());
    EXPECT_TRUE(test::entryExists(home + "/Library/Logs/app.log"));

    // A second run keeps the ticks; with the installers ticked, some of it waits in the Trash.
    click(test::visibleButton(done, "Start Over"));
    EXPECT_EQ(page->currentStage(), page->idleStage());
    click(page->idleStage()->scanButton());
    waitForPhase(SmartPhase::review);
    EXPECT_FALSE(review->ruleCheckBoxes().at("user-logs")->isChecked());
    click(review->ruleCheckBoxes().at("old-installers"));
    click(review->cleanButton());
    waitForPhase(SmartPhase::done);
    ASSERT_TRUE(state->quickClean().lastReport());
    const int64_t trashed = state->quickClean().lastReport()->movedToTrash;
    EXPECT_GT(trashed, 0);
    EXPECT_TRUE(done->trashLine()->isVisibleTo(page));
    EXPECT_EQ(done->trashLine()->text(),
              sizeText(trashed) + " is in the Trash until you empty it.");
}

TEST_F(QuickCleanViewTest, WithNoJunkTheReviewSaysSoAndLeadsBack) {
    openPage();
    click(page->idleStage()->scanButton());
    waitForPhase(SmartPhase::review);
    EXPECT_TRUE(page->reviewStage()->showsClean());
    click(test::visibleButton(page->reviewStage(), "Start Over"));
    EXPECT_EQ(state->quickClean().phase(), SmartPhase::idle);
}

TEST_F(QuickCleanViewTest, TheWaysOutOfAReviewAndOfADoneRun) {
    test::writeFile(home + "/Library/Caches/com.example.app/blob", 300000);
    openPage(false);
    click(page->idleStage()->scanButton());
    waitForPhase(SmartPhase::review);
    click(test::visibleButton(page->reviewStage(), "See Details"));
    EXPECT_EQ(state->section(), AppSection::junk);
    EXPECT_EQ(state->quickClean().phase(), SmartPhase::review);

    state->setSection(AppSection::smartClean);
    click(page->reviewStage()->cleanButton());
    waitForPhase(SmartPhase::done);
    click(test::visibleButton(page->doneStage(), "See What Else Is Using Space"));
    EXPECT_EQ(state->section(), AppSection::overview);
    // No scan yet, so one of the whole disk starts; without access it asks first.
    EXPECT_EQ(state->scanTarget(), ScanTarget::wholeDisk());
    EXPECT_TRUE(state->showAccessOnboarding());
}

} // namespace
} // namespace dorvik
