// The App Leftovers page and the removed-app banner over a real state: the search started by the
// page, the table's search field and sort, the selection bar's plan and the row's menu, and the
// banner's texts and buttons.

#include "UiTest.h"
#include "support/Environment.h"
#include "ui/Appearance.h"
#include "ui/LinuxWording.h"
#include "ui/pages/Pages.h"
#include "ui/pages/leftovers/LeftoverModel.h"
#include "ui/pages/leftovers/LeftoversView.h"
#include "ui/shell/RemovedAppBanner.h"
#include "ui/shell/RootView.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/SelectionBar.h"

#include <QApplication>
#include <QCoreApplication>
#include <QHeaderView>
#include <QLineEdit>
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

class LeftoversViewTest : public test::UiTest {
protected:
    std::string home = dir / "home";
    test::ScopedEnvironment scopedHome{"HOME", home};
    test::ScopedEnvironment scopedDataHome{"XDG_DATA_HOME", dir / "data"};
    test::ScopedEnvironment scopedSystem{"DORVIK_SYSTEM_ROOT", dir / "root"};
    std::string caches = home + "/Library/Caches";

    void SetUp() override {
        test::UiTest::SetUp();
        test::writeFile(caches + "/com.example.gone/blob", 400'000);
        test::writeFile(home + "/Library/Logs/org.example.tool/log", 100'000);
        test::writeFile(home + "/Library/Preferences/net.other.thing.plist", 70'000);
    }

    std::vector<Leftover> found() const {
        return {
            {caches + "/com.example.gone", "com.example.gone", "Library/Caches", 409'600,
             1'600'000'000},
            {home + "/Library/Logs/org.example.tool", "org.example.tool", "Library/Logs", 106'496,
             1'700'000'000},
            {home + "/Library/Preferences/net.other.thing.plist",
             "net.other.thing",
             "Library/Preferences",
             73'728,
             {}},
        };
    }

    static std::vector<std::string> identifiers(const LeftoversView& view) {
        std::vector<std::string> shown;
        for (const Leftover& leftover : view.model()->rows()) {
            shown.push_back(leftover.identifier);
        }
        return shown;
    }
};

// The page replaces the pending one; showing it starts the search, which as the locations are
// labelled ends with nothing found.
TEST_F(LeftoversViewTest, ShowingThePageSearchesAndSaysWhatItFound) {
    auto state = makeState();
    std::unique_ptr<QWidget> page(makePage(AppSection::leftovers, *state));
    auto* view = dynamic_cast<LeftoversView*>(page.get());
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->header()->title(), QStringLiteral("App Leftovers"));
    EXPECT_EQ(view->header()->subtitle(),
              QStringLiteral("Data in ~/Library from apps that are no longer installed on this "
                             "Mac."));
    EXPECT_FALSE(state->leftovers().isLoading());
    view->resize(1000, 700);
    view->show();
    EXPECT_TRUE(state->leftovers().isLoading());
    EXPECT_TRUE(showsText(view, QStringLiteral("Comparing ~/Library with your installed apps…")));
    EXPECT_TRUE(showsText(
        view, QStringLiteral("Only folders named after an identifier (com.company.app) "
                             "that don’t match any installed app are listed. Review them: "
                             "some may belong to a tool without a visible app.")));
    ASSERT_TRUE(waitUntil([&] { return !state->leftovers().isLoading(); }));
    settle();
    EXPECT_TRUE(showsText(view, QStringLiteral("No leftovers found.")));
    EXPECT_FALSE(view->table()->isVisible());
    EXPECT_FALSE(view->searchField()->isEnabled());
    // Shown again, the page keeps what it found.
    view->hide();
    view->show();
    EXPECT_FALSE(state->leftovers().isLoading());
}

TEST_F(LeftoversViewTest, TheSearchFieldFiltersAndTheColumnsSort) {
    auto state = makeState();
    LeftoversView view(*state);
    state->leftovers().setLeftovers(found());
    view.resize(1000, 700);
    view.show();
    settle();
    ASSERT_TRUE(view.table()->isVisible());
    const QAbstractItemModel* model = view.table()->model();
    EXPECT_EQ(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Identifier"));
    EXPECT_EQ(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Location"));
    EXPECT_EQ(model->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Size"));
    EXPECT_EQ(model->headerData(3, Qt::Horizontal).toString(), QStringLiteral("Modified"));
    EXPECT_EQ(identifiers(view), (std::vector<std::string>{"com.example.gone", "org.example.tool",
                                                           "net.other.thing"}));
    EXPECT_EQ(model->index(2, LeftoverModel::modified).data().toString(), QStringLiteral("—"));
    EXPECT_EQ(model->index(0, LeftoverModel::size).data().toString(), QStringLiteral("410 KB"));

    QTest::keyClicks(view.searchField(), QStringLiteral("EXAMPLE"));
    EXPECT_EQ(identifiers(view),
              (std::vector<std::string>{"com.example.gone", "org.example.tool"}));
    view.searchField()->setText(QStringLiteral("nothing like it"));
    EXPECT_TRUE(showsText(&view, QStringLiteral("No leftovers match the search.")));
    view.searchField()->clear();

    QHeaderView* header = view.table()->horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      QPoint(header->sectionViewportPosition(LeftoverModel::identifier) + 10, 8));
    EXPECT_EQ(identifiers(view), (std::vector<std::string>{"com.example.gone", "net.other.thing",
                                                           "org.example.tool"}));
}

TEST_F(LeftoversViewTest, TheSelectionBarProposesDeleteAppLeftovers) {
    auto state = makeState();
    LeftoversView view(*state);
    state->leftovers().setLeftovers(found());
    view.resize(1000, 700);
    view.show();
    settle();
    EXPECT_FALSE(view.selectionBar()->isVisible());
    view.table()->selectRow(0);
    view.table()->selectionModel()->select(view.model()->index(2, 0),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
    ASSERT_TRUE(view.selectionBar()->isVisible());
    EXPECT_TRUE(view.selectionBar()->summary()->text().startsWith(QStringLiteral("2 selected")));
    // A search keeps the selected rows that still show.
    view.searchField()->setText(QStringLiteral("gone"));
    view.searchField()->clear();
    EXPECT_EQ(view.selectedLeftovers().size(), 1u);
    view.table()->selectionModel()->select(view.model()->index(2, 0),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);

    QTest::mouseClick(view.selectionBar()->actionButton(), Qt::LeftButton);
    ASSERT_TRUE(state->removal().plan());
    const DeletionPlan& plan = *state->removal().plan();
    EXPECT_EQ(plan.title, "Delete App Leftovers");
    ASSERT_EQ(plan.items.size(), 2u);
    EXPECT_EQ(plan.items[0].path, caches + "/com.example.gone");
    EXPECT_EQ(plan.items[1].name, "net.other.thing.plist");
    EXPECT_EQ(plan.items[1].size, 73'728);

    // Once removed, a leftover leaves the table.
    state->removal().execute(plan, true);
    ASSERT_TRUE(waitUntil([&] { return view.model()->rowCount() == 1; }));
    EXPECT_EQ(identifiers(view), std::vector<std::string>{"org.example.tool"});
}

TEST_F(LeftoversViewTest, TheRowMenuShowsTheFileManager) {
    LinuxWording wording;
    QCoreApplication::installTranslator(&wording);
    auto state = makeState();
    LeftoversView view(*state);
    state->leftovers().setLeftovers(found());
    view.table()->selectRow(1);
    EXPECT_EQ(view.leftoversForMenuAt(1).size(), 1u);
    EXPECT_EQ(view.leftoversForMenuAt(0)[0].identifier, "com.example.gone");
    EXPECT_TRUE(view.leftoversForMenuAt(7).empty());
    QMenu* menu = view.makeMenu(view.leftoversForMenuAt(1));
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions()[0]->text(), QStringLiteral("Show in File Manager"));
    QCoreApplication::removeTranslator(&wording);
}

TEST_F(LeftoversViewTest, TheBannerStandsAboveThePagesUntilAnswered) {
    auto state = makeState();
    AppearanceController appearance{QApplication::palette()};
    RootView window(*state, appearance);
    window.show();
    settle();
    EXPECT_FALSE(window.bannerSlot()->isVisible());

    const RemovedApp gone{"Gone App",
                          "com.example.gone",
                          {{caches + "/com.example.gone", "Caches", 4'500'000},
                           {home + "/Library/Logs/com.example.gone", "Logs", 1'000'000},
                           {home + "/Library/Caches/ABC.com.example.gone", "Caches", 700'000}}};
    state->removedApp().report(gone);
    settle();
    ASSERT_TRUE(window.bannerSlot()->isVisible());
    EXPECT_TRUE(showsText(&window, QStringLiteral("Gone App was removed, but left 6.2 MB behind")));
    EXPECT_TRUE(showsText(&window, QStringLiteral("Caches · Logs")));

    QPushButton* notNow = visibleButton<QPushButton>(&window, QStringLiteral("Not Now"));
    ASSERT_NE(notNow, nullptr);
    QTest::mouseClick(notNow, Qt::LeftButton);
    EXPECT_FALSE(window.bannerSlot()->isVisible());
    EXPECT_FALSE(state->removal().plan());

    state->removedApp().report(gone);
    settle();
    QPushButton* review = visibleButton<QPushButton>(&window, QStringLiteral("Review and Remove…"));
    ASSERT_NE(review, nullptr);
    QTest::mouseClick(review, Qt::LeftButton);
    settle();
    EXPECT_FALSE(window.bannerSlot()->isVisible());
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->title, "Leftovers of Gone App");
    EXPECT_EQ(state->removal().plan()->items.size(), 3u);
}

} // namespace
} // namespace dorvik
