// The Developer page over a real home: the rules' items before a scan, the artifacts after one,
// the table's sort, the plan of a selection and of a row's menu, and the card of the virtual
// disks that only advises.

#include "UiTest.h"
#include "support/Environment.h"
#include "ui/pages/developer/DevItemModel.h"
#include "ui/pages/developer/DeveloperView.h"
#include "ui/pages/developer/VirtualDisksCard.h"
#include "ui/widgets/SelectionBar.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTest>

namespace dorvik {
namespace {

using test::settle;
using test::showsText;
using test::visibleButton;
using test::waitUntil;

constexpr int64_t MB = 1'000'000;

class DeveloperViewTest : public test::UiTest {
protected:
    std::string home = dir / "home";
    test::ScopedEnvironment scopedHome{"HOME", home};
    test::ScopedEnvironment scopedDataHome{"XDG_DATA_HOME", dir / "data"};

    std::string web = home + "/Projects/web/node_modules";
    std::string venv = home + "/Projects/ml/.venv";
    std::string npm = home + "/.npm/_cacache/content";

    void SetUp() override {
        test::UiTest::SetUp();
        test::writeAllocatedFile(web + "/react/blob", 30 * MB);
        test::setModificationTime(home + "/Projects/web", 1'500'000'000);
        test::writeAllocatedFile(venv + "/lib/blob", 25 * MB);
        test::setModificationTime(home + "/Projects/ml", 1'700'000'000);
        test::writeAllocatedFile(npm + "/blob", 2 * MB);
    }

    // The page shown, its rules' items searched.
    static void showAndLoad(DeveloperView& view, AppState& state) {
        view.resize(1000, 700);
        view.show();
        ASSERT_TRUE(waitUntil([&] { return state.developer().junk().has_value(); }));
        settle();
    }

    static std::vector<std::string> rowPaths(const DeveloperView& view) {
        std::vector<std::string> paths;
        for (const DevItem& item : view.model()->items()) {
            paths.push_back(item.path);
        }
        return paths;
    }

    static void clickHeader(const DeveloperView& view, int column) {
        QHeaderView* header = view.table()->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 10, 8));
    }
};

TEST_F(DeveloperViewTest, BeforeAScanTheHintAndTheRulesItems) {
    auto state = makeState();
    DeveloperView view(*state);
    showAndLoad(view, *state);
    EXPECT_TRUE(view.scanHint()->isVisible());
    EXPECT_TRUE(showsText(&view, QStringLiteral("Scan your disk (or your home folder) to find "
                                                "node_modules and virtual environments in your "
                                                "projects.")));
    EXPECT_EQ(rowPaths(view), std::vector<std::string>{npm});
    EXPECT_TRUE(view.table()->isVisible());
    EXPECT_FALSE(view.disksCard()->isVisible());

    scanFolder(*state, home);
    EXPECT_FALSE(view.scanHint()->isVisible());
    EXPECT_EQ(rowPaths(view), (std::vector<std::string>{web, venv, npm}));
}

TEST_F(DeveloperViewTest, EachColumnSortsAndSaysWhatItIs) {
    auto state = makeState();
    DeveloperView view(*state);
    showAndLoad(view, *state);
    scanFolder(*state, home);
    const DevItemModel& model = *view.model();
    EXPECT_EQ(model.headerData(DevItemModel::whatItIs, Qt::Horizontal, Qt::DisplayRole),
              QStringLiteral("What It Is"));
    EXPECT_EQ(model.headerData(DevItemModel::lastModified, Qt::Horizontal, Qt::DisplayRole),
              QStringLiteral("Project Last Modified"));
    EXPECT_EQ(model.data(model.index(0, DevItemModel::name), Qt::DisplayRole),
              QStringLiteral("web / node_modules"));
    EXPECT_EQ(model.data(model.index(0, DevItemModel::whatItIs), Qt::DisplayRole),
              QStringLiteral("Node dependencies. `npm install` restores them."));

    const struct {
        int column;
        std::vector<std::string> firstClick;
    } cases[] = {
        // The npm cache's folder is the newest: it was written by the test just now.
        {DevItemModel::lastModified, {npm, venv, web}},
        {DevItemModel::name, {venv, npm, web}}, // "ml / .venv", "npm cache", "web / …"
        {DevItemModel::whatItIs, {web, npm, venv}},
        {DevItemModel::size, {web, venv, npm}},
    };
    for (const auto& [column, firstClick] : cases) {
        SCOPED_TRACE(column);
        clickHeader(view, column);
        EXPECT_EQ(rowPaths(view), firstClick);
        clickHeader(view, column);
        EXPECT_EQ(rowPaths(view), std::vector<std::string>(firstClick.rbegin(), firstClick.rend()));
    }
}

TEST_F(DeveloperViewTest, TheSelectionAndARowsMenuCleanThroughThePlanAndTheRowsGo) {
    auto state = makeState();
    DeveloperView view(*state);
    showAndLoad(view, *state);
    scanFolder(*state, home);
    ASSERT_EQ(rowPaths(view), (std::vector<std::string>{web, venv, npm}));

    view.table()->selectRow(0);
    QTest::keyClick(view.table(), Qt::Key_Down, Qt::ShiftModifier);
    ASSERT_TRUE(view.selectionBar()->isVisible());
    EXPECT_TRUE(view.selectionBar()->summary()->text().startsWith(QStringLiteral("2 selected")));
    // The menu of a row in the selection concerns the whole selection.
    QMenu* menu = view.makeMenu(view.itemsForMenuAt(1));
    QStringList texts;
    for (const QAction* action : menu->actions()) {
        texts << action->text();
    }
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Show in Finder"), QStringLiteral("Copy Path"),
                                  QString(), QStringLiteral("Clean 2 items")}));
    delete menu;

    QTest::mouseClick(view.selectionBar()->actionButton(), Qt::LeftButton);
    ASSERT_TRUE(state->removal().plan());
    const DeletionPlan plan = *state->removal().plan();
    EXPECT_EQ(plan.title, "Clean Developer Artifacts");
    ASSERT_EQ(plan.items.size(), 2u);
    EXPECT_EQ(plan.items[0].path, web);
    EXPECT_EQ(plan.items[1].path, venv);
    EXPECT_EQ(plan.items[0].removal, Removal::permanent);

    state->removal().execute(plan, true);
    ASSERT_TRUE(waitUntil([&] { return rowPaths(view).size() == 1; }));
    EXPECT_EQ(rowPaths(view), std::vector<std::string>{npm});
    EXPECT_FALSE(test::entryExists(web));
    EXPECT_FALSE(view.selectionBar()->isVisible());

    // A row outside the selection: its menu is its own.
    QMenu* own = view.makeMenu(view.itemsForMenuAt(0));
    ASSERT_EQ(own->actions().size(), 4);
    EXPECT_EQ(own->actions()[3]->text(), QStringLiteral("Clean npm cache"));
    own->actions()[3]->trigger();
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->items.front().path, npm);
    delete own;
}

TEST_F(DeveloperViewTest, TheDisksCardAdvisesCopiesTheCommandAndNeverDeletes) {
    const std::string docker = home + "/.docker/desktop/vms/0/data/Docker.raw";
    const std::string vdi = home + "/VirtualBox VMs/Win/Win.vdi";
    test::writeAllocatedFile(docker, 600 * MB, 64'000'000'000);
    test::writeAllocatedFile(vdi, 520 * MB, 520 * MB);
    auto state = makeState();
    DeveloperView view(*state);
    showAndLoad(view, *state);
    scanFolder(*state, home);

    VirtualDisksCard* card = view.disksCard();
    ASSERT_TRUE(card->isVisible());
    ASSERT_EQ(card->disks().size(), 2u);
    EXPECT_TRUE(showsText(card, QStringLiteral("Containers and virtual machines")));
    EXPECT_TRUE(showsText(card, QStringLiteral("Docker.raw")));
    EXPECT_TRUE(showsText(card, QStringLiteral("Docker Desktop")));
    EXPECT_TRUE(showsText(card, QStringLiteral("VirtualBox")));
    EXPECT_TRUE(showsText(card, QStringLiteral("docker system prune")));
    // The disk that may grow says how far; the full one does not.
    EXPECT_TRUE(showsText(card, QStringLiteral("600 MB  ·  can grow to 64 GB")));
    EXPECT_TRUE(showsText(card, QStringLiteral("520 MB")));

    // One copy button, for the disk with a command; each disk can be shown, none deleted.
    QPushButton* copy = visibleButton<QPushButton>(card, QStringLiteral("Copy Command"));
    ASSERT_NE(copy, nullptr);
    int reveals = 0;
    for (const QPushButton* button : card->findChildren<QPushButton*>()) {
        EXPECT_FALSE(button->text().contains(QStringLiteral("Delete")) ||
                     button->text().contains(QStringLiteral("Clean")))
            << button->text().toStdString();
        reveals += button->text() == QStringLiteral("Show in Finder") ? 1 : 0;
    }
    EXPECT_EQ(reveals, 2);
    EXPECT_EQ(card->findChildren<QPushButton*>().size(), 3);

    QGuiApplication::clipboard()->clear();
    QTest::mouseClick(copy, Qt::LeftButton);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("docker system prune"));
    EXPECT_EQ(copy->text(), QStringLiteral("Copied"));
    EXPECT_EQ(card->copied(), docker);
    ASSERT_TRUE(waitUntil([&] { return copy->text() == QStringLiteral("Copy Command"); },
                          VirtualDisksCard::copiedTime * 3));
    EXPECT_FALSE(card->copied());

    // A disk removed elsewhere in the program leaves the card; the last one takes it away.
    state->removal().performDeletion({makeDeletionRequest(vdi, 520 * MB, Removal::trash)}, true);
    ASSERT_TRUE(waitUntil([&] { return card->disks().size() == 1; }));
    state->removal().performDeletion({makeDeletionRequest(docker, 600 * MB, Removal::trash)}, true);
    ASSERT_TRUE(waitUntil([&] { return !card->isVisible(); }));
}

} // namespace
} // namespace dorvik
