#include "UiTest.h"
#include "scanning/Scanner.h"
#include "ui/Appearance.h"
#include "ui/shell/AccessOnboardingView.h"
#include "ui/shell/RootView.h"
#include "ui/shell/ScanPrompt.h"
#include "ui/shell/SheetOverlay.h"
#include "ui/shell/Sidebar.h"

#include <QApplication>
#include <QPushButton>
#include <QSplitter>
#include <QTest>

namespace dorvik {
namespace {

class AccessOnboardingTest : public test::UiTest {
protected:
    AccessOnboardingView* sheet(const RootView& window) {
        QApplication::processEvents(); // a dismissed sheet goes at the next turn of the loop
        return dynamic_cast<AccessOnboardingView*>(window.sheets()->sheet());
    }
    AppearanceController appearance{QApplication::palette()};
};

TEST_F(AccessOnboardingTest, NoScanStartsUntilTheUserGoesOnWithoutAccess) {
    auto state = makeState(false);
    state->setSection(AppSection::overview);
    RootView window(*state, appearance);
    window.show();
    QWidget* overview = window.page(AppSection::overview);

    // Both scan choices of the prompt ask first.
    for (const QString choice : {"Scan Entire Disk", "Home Folder Only"}) {
        QAbstractButton* button = test::visibleButton(overview, choice);
        ASSERT_NE(button, nullptr) << choice.toStdString();
        button->click();
        ASSERT_NE(sheet(window), nullptr) << choice.toStdString();
        EXPECT_FALSE(state->isScanning());
        EXPECT_FALSE(window.sidebar()->isEnabled()); // the window under the sheet takes no input
        EXPECT_TRUE(test::showsText(&window, "Let Dorvik see your whole disk"));

        // Escape closes the sheet and starts nothing.
        QTest::keyClick(sheet(window), Qt::Key_Escape);
        EXPECT_EQ(sheet(window), nullptr);
        EXPECT_FALSE(state->showAccessOnboarding());
        EXPECT_FALSE(state->isScanning());
        EXPECT_TRUE(window.sidebar()->isEnabled());
    }

    // The target of the last choice, the home folder, is what goes on without access.
    test::visibleButton(overview, "Home Folder Only")->click();
    ASSERT_NE(sheet(window), nullptr);
    sheet(window)->scanWithoutAccessButton()->click();
    EXPECT_TRUE(state->isScanning());
    EXPECT_TRUE(state->settings().accessOnboardingSkipped());
    EXPECT_EQ(sheet(window), nullptr);
    ASSERT_TRUE(test::waitUntil([&] { return !state->isScanning(); }));
    test::settle();
    ASSERT_TRUE(state->scan());
    EXPECT_EQ(state->scan()->rootPath, std::string(getenv("HOME")));

    // Once skipped, the sheet doesn't come back.
    test::visibleButton(overview, "Rescan")->click();
    EXPECT_TRUE(state->isScanning());
    EXPECT_EQ(sheet(window), nullptr);
}

TEST_F(AccessOnboardingTest, AccessGivenMeanwhileClosesTheSheetAndScans) {
    auto state = makeState(false);
    RootView window(*state, appearance);
    window.show();
    state->startScan(ScanTarget::home());
    ASSERT_NE(sheet(window), nullptr);

    *access = true;
    state->applicationBecameActive();
    EXPECT_TRUE(state->isScanning());
    EXPECT_EQ(sheet(window), nullptr);
    ASSERT_TRUE(test::waitUntil([&] { return !state->isScanning(); }));
}

TEST_F(AccessOnboardingTest, ThePromptFollowsTheStateOfTheScan) {
    // An archive at start: the prompt shows the restore until it lands.
    test::writeFile(dir / "f/a.txt", 10);
    const auto scan = Scanner().scan(dir / "f", {}, nullptr);
    ASSERT_TRUE(
        ScanArchive::write(*scan, ScanTarget::folder(dir / "f"), ScanArchive::defaultPath()));
    access = std::make_shared<bool>(false);
    AppStateOptions options;
    options.accessProbe = [answer = access] { return *answer; };
    AppState state(options);
    ScanPrompt prompt(state, "Title", "Message");
    prompt.show();
    EXPECT_EQ(prompt.showing(), ScanPrompt::Showing::restoring);
    EXPECT_TRUE(test::showsText(&prompt, "Loading your last scan…"));
    ASSERT_TRUE(test::waitUntil([&] { return !state.isRestoringScan(); }));
    EXPECT_EQ(prompt.showing(), ScanPrompt::Showing::invitation);

    // Without access the banner asks for it; "I’ve Done It" looks again.
    EXPECT_TRUE(test::showsText(&prompt, "Grant Full Disk Access"));
    QAbstractButton* done = test::visibleButton(&prompt, "I’ve Done It");
    ASSERT_NE(done, nullptr);
    done->click();
    EXPECT_TRUE(test::showsText(&prompt, "Grant Full Disk Access"));
    *access = true;
    done->click();
    EXPECT_FALSE(test::showsText(&prompt, "Grant Full Disk Access"));
    EXPECT_TRUE(test::showsText(&prompt, "Title"));
    EXPECT_TRUE(test::showsText(&prompt, "Message"));

    state.startScan(ScanTarget::home());
    EXPECT_EQ(prompt.showing(), ScanPrompt::Showing::scanning);
    test::waitUntil([&] { return !state.isScanning(); });
    test::settle();
}

} // namespace
} // namespace dorvik
