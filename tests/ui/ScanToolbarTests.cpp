#include "UiTest.h"
#include "base/Dates.h"
#include "scanning/ScanArchive.h"
#include "scanning/Scanner.h"
#include "ui/shell/ScanToolbar.h"
#include "ui/widgets/ElidedLabel.h"

#include <QMenu>
#include <QPushButton>

namespace dorvik {
namespace {

using ScanToolbarTest = test::UiTest;

QStringList actionTexts(const QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions()) {
        texts << action->text();
    }
    return texts;
}

TEST_F(ScanToolbarTest, BeforeAnyScanDuringOneAndAfter) {
    test::writeFile(dir / "small/a.txt", 10);
    auto state = makeState();
    ScanToolbar toolbar(*state);
    toolbar.show();

    EXPECT_FALSE(toolbar.showsProgress());
    EXPECT_EQ(toolbar.scanButton()->text(), "Scan");
    EXPECT_EQ(toolbar.scanButton()->toolTip(), "Scan: Entire disk");
    EXPECT_EQ(actionTexts(*toolbar.scanMenu()),
              QStringList({"Entire Disk", "Home Folder", "Choose Folder…"}));

    // The worker has not reported yet: the progress starts from nothing.
    state->startScan(ScanTarget::folder(dir / "small"));
    EXPECT_TRUE(toolbar.showsProgress());
    EXPECT_TRUE(toolbar.stopButton()->isVisible());
    EXPECT_EQ(toolbar.progressLine()->text(), "0 files · Zero KB");
    EXPECT_EQ(toolbar.currentPath()->text(), "");

    toolbar.stopButton()->click();
    EXPECT_FALSE(state->isScanning());
    EXPECT_FALSE(toolbar.showsProgress());
    EXPECT_EQ(toolbar.scanButton()->text(), "Scan"); // a stopped first scan leaves no scan

    scanFolder(*state, dir / "small");
    EXPECT_EQ(toolbar.scanButton()->text(), "Rescan");
    EXPECT_EQ(toolbar.scanButton()->toolTip(), "Scan: small");
    EXPECT_FALSE(toolbar.scanButton()->property("prominent").toBool()); // a fresh scan
}

TEST_F(ScanToolbarTest, AStaleScanMakesTheButtonProminent) {
    test::writeFile(dir / "f/a.txt", 10);
    const struct {
        double age;
        bool prominent;
    } cases[] = {{2 * Dates::secondsPerDay, true}, {Dates::secondsPerDay - 60, false}};
    for (const auto& c : cases) {
        auto scan = Scanner().scan(dir / "f", {}, nullptr);
        ASSERT_TRUE(scan);
        scan->finishedAt = Dates::now() - c.age;
        ASSERT_TRUE(
            ScanArchive::write(*scan, ScanTarget::folder(dir / "f"), ScanArchive::defaultPath()));
        auto state = makeState(); // restores the archive at start
        ScanToolbar toolbar(*state);
        ASSERT_TRUE(state->scan());
        EXPECT_EQ(toolbar.scanButton()->text(), "Rescan");
        EXPECT_EQ(toolbar.scanButton()->property("prominent").toBool(), c.prominent) << c.age;
    }
}

TEST_F(ScanToolbarTest, TheMenuStartsItsTargets) {
    auto state = makeState(false);
    ScanToolbar toolbar(*state);
    const QList<QAction*> actions = toolbar.scanMenu()->actions();

    actions[1]->trigger(); // "Home Folder" without access asks first
    EXPECT_EQ(state->scanTarget(), ScanTarget::home());
    EXPECT_TRUE(state->showAccessOnboarding());
    EXPECT_FALSE(state->isScanning());

    state->setShowAccessOnboarding(false);
    actions[0]->trigger();
    EXPECT_EQ(state->scanTarget(), ScanTarget::wholeDisk());
    EXPECT_TRUE(state->showAccessOnboarding());

    // The button itself starts the current target.
    state->setShowAccessOnboarding(false);
    *access = true;
    state->startScan(ScanTarget::home());
    ASSERT_TRUE(test::waitUntil([&] { return !state->isScanning(); }));
    test::settle();
    toolbar.scanButton()->click();
    EXPECT_TRUE(state->isScanning());
    EXPECT_EQ(state->scanTarget(), ScanTarget::home());
}

} // namespace
} // namespace dorvik
