// The Applications page over bundles made in a home and a system root of the test's own: the
// loading note, the table with its badges, sort and filter, the inspector in each of its states,
// and the context menu.

#include "UiTest.h"
#include "base/Dates.h"
#include "base/TextForms.h"
#include "support/Bundles.h"
#include "support/ChildProcess.h"
#include "support/Environment.h"
#include "ui/pages/apps/AppInspector.h"
#include "ui/pages/apps/AppTableModel.h"
#include "ui/pages/apps/AppsView.h"
#include "ui/widgets/SymbolView.h"

#include <QCheckBox>
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
using test::waitUntil;

constexpr double day = 86400;

class AppsPageTest : public test::UiTest {
protected:
    std::string home = dir / "home";
    test::ScopedEnvironment scopedHome{"HOME", home};
    test::ScopedEnvironment scopedDataHome{"XDG_DATA_HOME", dir / "data"};
    test::ScopedEnvironment systemRoot{"DORVIK_SYSTEM_ROOT", dir / "system"};
    // Whether an app runs is asked of the whole machine, where other tests run apps too.
    std::string writerID = test::identifierOfThisTest("com.example.writer");
    std::string writer = home + "/Applications/Writer.app";
    std::string old = home + "/Applications/Old.app";
    std::string ledger = home + "/Applications/Ledger.app";
    std::string notes = dir / "system/Applications/Notes.app";

    void makeBundles() {
        test::writeInfoPlist(writer, {{"CFBundleIdentifier", writerID},
                                      {"CFBundleName", "Writer"},
                                      {"CFBundleShortVersionString", "2.1"},
                                      {"CFBundleExecutable", "writer"}});
        test::writeAllocatedFile(writer + "/Contents/MacOS/writer", 3'000'000);
        test::makeFolder(writer + "/Contents/_MASReceipt");
        test::writeAllocatedFile(home + "/Library/Caches/" + writerID + "/c", 1'000'000);
        test::writeAllocatedFile(home + "/Library/Preferences/" + writerID + ".plist", 4096);

        test::writeInfoPlist(old, {{"CFBundleIdentifier", "org.example.old"},
                                   {"CFBundleName", "Old Timer"},
                                   {"CFBundleExecutable", "old"}});
        test::writeAllocatedFile(old + "/Contents/MacOS/old", 2'000'000);
        test::setModificationTime(old + "/Contents/MacOS/old", Dates::now() - 200 * day);

        test::makeFolder(ledger + "/Contents");
        test::writeAllocatedFile(ledger + "/Contents/data", 500'000);

        test::writeInfoPlist(
            notes, {{"CFBundleIdentifier", "com.apple.Notes"}, {"CFBundleName", "Notes"}});
        test::writeAllocatedFile(notes + "/Contents/data", 100'000);
    }

    // The page shown and its list loaded.
    static void showAndLoad(AppsView& view, AppState& state) {
        view.resize(1100, 700);
        view.show();
        ASSERT_TRUE(waitUntil([&] { return !state.apps().appsLoading(); }));
        settle();
    }

    static std::vector<std::string> rowNames(const AppsView& view) {
        std::vector<std::string> names;
        for (const InstalledApp& app : view.model()->apps()) {
            names.push_back(app.name);
        }
        return names;
    }

    static QString cell(const AppsView& view, int row, int column) {
        return view.model()->index(row, column).data().toString();
    }

    static QStringList badges(const AppsView& view, const std::string& path) {
        const int row = view.model()->rowOf(path);
        return view.model()
            ->index(row, AppTableModel::name)
            .data(AppTableModel::badgesRole)
            .toStringList();
    }

    static void select(AppsView& view, const std::string& path) {
        view.table()->selectRow(view.model()->rowOf(path));
        // Rows added to a shown pane show once the event loop has run.
        QCoreApplication::processEvents();
        ASSERT_TRUE(view.inspector()->app());
        ASSERT_EQ(view.inspector()->app()->path, path);
    }
};

TEST_F(AppsPageTest, TheTableWithItsBadgesSortAndFilter) {
    makeBundles();
    auto state = makeState();
    AppsView view(*state);
    view.resize(1100, 700);
    view.show();
    // The first visit loads the list, and says so while nothing is there.
    EXPECT_TRUE(state->apps().appsLoading());
    EXPECT_TRUE(showsText(&view, QStringLiteral("Measuring apps and their data…")));
    EXPECT_FALSE(view.refreshButton()->isEnabled());
    ASSERT_TRUE(waitUntil([&] { return !state->apps().appsLoading(); }));
    settle();
    EXPECT_TRUE(view.refreshButton()->isEnabled());
    EXPECT_TRUE(view.table()->isVisible());

    EXPECT_EQ(rowNames(view), (std::vector<std::string>{"Writer", "Old Timer", "Ledger", "Notes"}));
    int64_t total = 0;
    for (const InstalledApp& app : state->apps().apps()) {
        total += app.totalSize();
    }
    EXPECT_EQ(view.countLabel()->text(),
              QStringLiteral("4 apps · ") + QString::fromStdString(TextForms::size(total)));
    EXPECT_EQ(badges(view, writer), QStringList{QStringLiteral("App Store")});
    EXPECT_EQ(badges(view, notes), QStringList{QStringLiteral("Apple")});
    EXPECT_EQ(badges(view, ledger), QStringList{});
    EXPECT_EQ(cell(view, view.model()->rowOf(notes), AppTableModel::lastUsed),
              QStringLiteral("Never / unknown"));
    EXPECT_EQ(cell(view, view.model()->rowOf(old), AppTableModel::lastUsed),
              QString::fromStdString(
                  TextForms::abbreviatedDate(state->apps().apps()[1].lastUsed.value_or(0))));

    // The user's column: names from A, then back to the largest first.
    QHeaderView* header = view.table()->horizontalHeader();
    header->setSortIndicator(AppTableModel::name, Qt::AscendingOrder);
    EXPECT_EQ(rowNames(view), (std::vector<std::string>{"Ledger", "Notes", "Old Timer", "Writer"}));
    header->setSortIndicator(AppTableModel::lastUsed, Qt::DescendingOrder);
    EXPECT_EQ(rowNames(view).front(), "Writer");
    header->setSortIndicator(AppTableModel::total, Qt::DescendingOrder);

    const struct {
        QString search;
        bool hideApple;
        bool unused;
        std::vector<std::string> names;
    } cases[] = {
        {{}, true, false, {"Writer", "Old Timer", "Ledger"}},
        {{}, false, true, {"Old Timer", "Ledger", "Notes"}},
        {{}, true, true, {"Old Timer", "Ledger"}},
        {QStringLiteral("TIMER"), false, false, {"Old Timer"}},
        // Not in any name: the identifiers are searched.
        {QStringLiteral("example"), false, false, {"Writer", "Old Timer"}},
        {QStringLiteral("apple"), true, false, {}},
    };
    for (const auto& c : cases) {
        view.searchField()->setText(c.search);
        view.hideAppleToggle()->setChecked(c.hideApple);
        view.unusedToggle()->setChecked(c.unused);
        EXPECT_EQ(rowNames(view), c.names)
            << c.search.toStdString() << " " << c.hideApple << " " << c.unused;
        EXPECT_TRUE(view.countLabel()->text().startsWith(QString::number(c.names.size()) +
                                                         QStringLiteral(" apps · ")));
    }
    EXPECT_TRUE(showsText(&view, QStringLiteral("No apps match the filter.")));
    EXPECT_EQ(view.countLabel()->text(), QStringLiteral("0 apps · Zero KB"));
}

TEST_F(AppsPageTest, WithoutApplicationsTheEmptyNote) {
    auto state = makeState();
    AppsView view(*state);
    showAndLoad(view, *state);
    EXPECT_TRUE(showsText(&view, QStringLiteral("No applications found.")));
    EXPECT_TRUE(showsText(&view, QStringLiteral("Select an app")));
    EXPECT_FALSE(view.table()->isVisible());
}

TEST_F(AppsPageTest, TheInspectorInItsThreeStates) {
    makeBundles();
    auto state = makeState();
    AppsView view(*state);
    showAndLoad(view, *state);
    AppInspector* inspector = view.inspector();
    EXPECT_TRUE(showsText(&view, QStringLiteral("Select an app")));

    select(view, writer);
    EXPECT_FALSE(showsText(&view, QStringLiteral("Select an app")));
    EXPECT_TRUE(showsText(inspector, QStringLiteral("Writer")));
    EXPECT_TRUE(showsText(inspector, QStringLiteral("Version 2.1")));
    EXPECT_TRUE(showsText(inspector, QString::fromStdString(writerID)));
    EXPECT_TRUE(showsText(inspector, QStringLiteral("Caches")));
    EXPECT_TRUE(showsText(inspector, QStringLiteral("Preferences")));
    EXPECT_TRUE(inspector->uninstallButton()->isVisible());
    EXPECT_TRUE(inspector->uninstallButton()->isEnabled());
    EXPECT_FALSE(inspector->actionNote()->isVisible());
    EXPECT_FALSE(inspector->lock()->isVisible());

    // While it runs the button stays, disabled; once it quits the next look enables it.
    {
        const std::string executable = test::installExecutable(writer, "/bin/sleep", "writer");
        test::ChildProcess running(executable, {"30"});
        ASSERT_TRUE(waitUntil([&] { return !inspector->uninstallButton()->isEnabled(); }));
        EXPECT_TRUE(inspector->uninstallButton()->isVisible());
        EXPECT_TRUE(showsText(inspector, QStringLiteral("Quit the app to uninstall it.")));
        EXPECT_TRUE(badges(view, writer).contains(QStringLiteral("Running")));
        // The menu refuses the same way.
        QMenu* menu = view.makeMenu(view.model()->rowOf(writer));
        const QList<QAction*> actions = menu->actions();
        const auto uninstall =
            std::ranges::find(actions, QStringLiteral("Uninstall…"), &QAction::text);
        ASSERT_NE(uninstall, actions.end());
        EXPECT_FALSE((*uninstall)->isEnabled());
        (*uninstall)->trigger();
        EXPECT_FALSE(state->removal().plan());
        delete menu;
    }
    ASSERT_TRUE(waitUntil([&] { return inspector->uninstallButton()->isEnabled(); }));
    EXPECT_FALSE(badges(view, writer).contains(QStringLiteral("Running")));
    QTest::mouseClick(inspector->uninstallButton(), Qt::LeftButton);
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->title, "Uninstall Writer");
    EXPECT_EQ(state->removal().plan()->items.size(), 3u);
    state->removal().cancelPlan();

    // Apple's: the lock and the sentence, no button.
    select(view, notes);
    EXPECT_FALSE(inspector->uninstallButton()->isVisible());
    EXPECT_TRUE(inspector->lock()->isVisible());
    EXPECT_TRUE(showsText(inspector, QStringLiteral("Apple app: Dorvik doesn’t uninstall it.")));
    EXPECT_TRUE(showsText(inspector, QStringLiteral("No data found outside the app.")));

    // No identifier: nothing related, and it may go.
    select(view, ledger);
    EXPECT_TRUE(showsText(inspector, QStringLiteral("No data found outside the app.")));
    EXPECT_TRUE(inspector->uninstallButton()->isEnabled());
    QMenu* menu = view.makeMenu(view.model()->rowOf(ledger));
    QStringList texts;
    for (QAction* action : menu->actions()) {
        if (!action->isSeparator()) {
            texts.append(action->text());
        }
    }
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Show in Finder"), QStringLiteral("Uninstall…")}));
    menu->actions().back()->trigger();
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->items.size(), 1u);
    EXPECT_EQ(state->removal().plan()->items[0].path, ledger);
    delete menu;
}

TEST_F(AppsPageTest, AnAppleAppShowsTheLockWhileItRunsToo) {
    makeBundles();
    const std::string executable = test::installExecutable(notes, "/bin/sleep", "Notes");
    test::ChildProcess running(executable, {"30"});
    auto state = makeState();
    AppsView view(*state);
    showAndLoad(view, *state);
    select(view, notes);
    EXPECT_EQ(badges(view, notes),
              (QStringList{QStringLiteral("Apple"), QStringLiteral("Running")}));
    EXPECT_FALSE(view.inspector()->uninstallButton()->isVisible());
    EXPECT_TRUE(view.inspector()->lock()->isVisible());
    EXPECT_TRUE(
        showsText(view.inspector(), QStringLiteral("Apple app: Dorvik doesn’t uninstall it.")));
}

} // namespace
} // namespace dorvik
