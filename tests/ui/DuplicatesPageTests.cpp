// The Duplicates page over a real AppState and real files: its views from "scan first" to the
// groups, the rows of a group, the selection and what its two actions refuse.

#include "base/TextForms.h"
#include "platform/Reflink.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/ReflinkMount.h"
#include "support/SampleFiles.h"
#include "support/TestHome.h"
#include "ui/QtText.h"
#include "ui/pages/duplicates/DuplicatesView.h"
#include "ui/widgets/SelectionBar.h"

#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

using test::mebibyte;
using test::writeContent;

class DuplicatesPageTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
        page = std::make_unique<DuplicatesView>(*state);
        page->resize(1000, 700);
        page->show();
    }
    void TearDown() override {
        settle();
        page.reset();
        state.reset();
    }

    void scanAndFind(const std::string& folder) {
        state->startScan(ScanTarget::folder(folder));
        ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
        settle();
        page->findButton()->click();
        EXPECT_FALSE(page->findButton()->isEnabled()) << "one search at a time";
        ASSERT_TRUE(waitUntil([&] { return !state->duplicates().progress(); }));
        settle();
    }

    // Each row of the list as "name | note | date", a group's header as its text alone.
    QStringList rows() const {
        QStringList lines;
        QTreeWidget* tree = page->tree();
        for (int top = 0; top < tree->topLevelItemCount(); ++top) {
            lines << tree->topLevelItem(top)->text(0);
            for (int child = 0; child < tree->topLevelItem(top)->childCount(); ++child) {
                const QTreeWidgetItem* row = tree->topLevelItem(top)->child(child);
                lines << row->text(0) + " | " + row->text(1) + " | " + row->text(2);
            }
        }
        return lines;
    }

    bool showsText(const QString& text) const {
        for (const QLabel* label : page->findChildren<QLabel*>()) {
            if (label->text() == text && label->isVisibleTo(page.get())) {
                return true;
            }
        }
        return false;
    }

    std::unique_ptr<AppState> state;
    std::unique_ptr<DuplicatesView> page;
};

TEST_F(DuplicatesPageTest, FromScanFirstToTheGroups) {
    EXPECT_TRUE(page->showsScanPrompt());
    EXPECT_FALSE(page->findButton()->isVisibleTo(page.get()));

    writeContent(home + "/old/never.bin", 2 * mebibyte, 'n');
    writeContent(home + "/new/newer.bin", 2 * mebibyte, 'n');
    writeContent(home + "/new/dated.bin", 2 * mebibyte, 'n');
    test::setModificationTime(home + "/old/never.bin", 0);
    test::setModificationTime(home + "/new/dated.bin", 1'600'000'000);
    test::setModificationTime(home + "/new/newer.bin", 1'700'000'000);
    state->startScan(ScanTarget::folder(home));
    ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
    settle();
    EXPECT_TRUE(page->findButton()->isVisibleTo(page.get()));
    EXPECT_TRUE(showsText("Click “Find Duplicates” to get started."));

    scanAndFind(home);
    const int64_t size = test::allocatedBytes(home + "/new/dated.bin");
    EXPECT_TRUE(showsText("1 groups · " + qtText(TextForms::size(2 * size)) + " recoverable"));
    EXPECT_EQ(rows(), (QStringList{
                          "3 copies · " + qtText(TextForms::size(size)) + " each",
                          "never.bin | Suggested original | —",
                          "dated.bin |  | " + qtText(TextForms::abbreviatedDate(1'600'000'000)),
                          "newer.bin |  | " + qtText(TextForms::abbreviatedDate(1'700'000'000)),
                      }));
    EXPECT_FALSE(page->selectionBar()->isVisible());
}

TEST_F(DuplicatesPageTest, SelectAllCopiesThenTheActionsAndTheirRefusal) {
    writeContent(home + "/a/one", 2 * mebibyte, 'a');
    writeContent(home + "/b/one", 2 * mebibyte, 'a');
    writeContent(home + "/a/two", 3 * mebibyte, 'b');
    writeContent(home + "/b/two", 3 * mebibyte, 'b');
    scanAndFind(home);
    ASSERT_EQ(state->duplicates().groups().size(), 2u);

    for (QPushButton* button : page->findChildren<QPushButton*>()) {
        if (button->text() == "Select All Copies") {
            button->click();
        }
    }
    EXPECT_EQ(page->selection(), allCopies(state->duplicates().groups()));
    EXPECT_TRUE(page->selectionBar()->isVisible());
    // Ticking a group's first file as well leaves that group without a copy.
    QTreeWidgetItem* oldest = page->tree()->topLevelItem(0)->child(0);
    oldest->setCheckState(0, Qt::Checked);
    EXPECT_EQ(page->selection().size(), 3u);

    page->selectionBar()->onAction();
    EXPECT_FALSE(state->removal().plan());
    EXPECT_EQ(state->removal().toast()->message, "Keep at least one copy in each group");
    page->selectionBar()->onSecondary();
    EXPECT_FALSE(state->duplicates().isSharingSpace());
    EXPECT_EQ(page->selection().size(), 3u) << "the selection stays for the user to fix";

    oldest->setCheckState(0, Qt::Unchecked);
    page->selectionBar()->onAction();
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->items.size(), 2u);
    EXPECT_EQ(page->selection().size(), 2u) << "deleting keeps the selection";
}

TEST_F(DuplicatesPageTest, CopiesThatShareTheirBlocksAreMarked) {
    test::ReflinkMount xfs(dir.path());
    if (!xfs.mounted()) {
        GTEST_SKIP() << xfs.whyNot();
    }
    writeContent(xfs.path() + "/original", 2 * mebibyte, 'c');
    ASSERT_EQ(platform::cloneFile(xfs.path() + "/original", xfs.path() + "/clone"), 0);
    scanAndFind(xfs.path());
    ASSERT_EQ(page->tree()->topLevelItemCount(), 1);
    for (int child = 0; child < 2; ++child) {
        const QTreeWidgetItem* row = page->tree()->topLevelItem(0)->child(child);
        EXPECT_TRUE(row->text(1).endsWith("Shares space")) << row->text(1).toStdString();
        EXPECT_EQ(row->toolTip(1), "This copy is stored only once on disk together with another "
                                   "one, so it takes no extra space.");
    }
    EXPECT_TRUE(showsText("1 groups · Zero KB recoverable"));
}

} // namespace
} // namespace dorvik
