// The removal side of the window: the confirmation sheet, the toast and the History page, over a
// real AppState, real files in a home of the test's own, and the real Trash of that home.

#include "base/TextForms.h"
#include "removal/DeletionHistory.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TestHome.h"
#include "ui/Appearance.h"
#include "ui/pages/history/HistoryModel.h"
#include "ui/pages/history/HistoryView.h"
#include "ui/sheets/ConfirmDeletionView.h"
#include "ui/shell/RootView.h"
#include "ui/shell/SheetOverlay.h"
#include "ui/shell/ToastView.h"
#include "ui/widgets/SymbolView.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

#include <filesystem>

namespace dorvik {
namespace {

using namespace std::chrono_literals;
using test::settle;
using test::waitUntil;

class RemovalUiTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
        window = std::make_unique<RootView>(*state, appearance, 1s);
        window->resize(1100, 720);
        window->show();
    }
    void TearDown() override {
        settle();
        window.reset();
        state.reset();
    }

    // A real file of `bytes` in the home, judged by the safety rules.
    PlanItem file(const std::string& relative, int64_t bytes) const {
        test::writeFile(home + "/" + relative, bytes);
        return makePlanItem(home + "/" + relative, bytes, Removal::trash);
    }

    ConfirmDeletionView* sheet() const {
        QApplication::processEvents(); // a dismissed sheet goes at the next turn of the loop
        return dynamic_cast<ConfirmDeletionView*>(window->sheets()->sheet());
    }

    // The rows of the sheet's list as text: headings as "[risk] count · size", items by name.
    QStringList sheetRows() const {
        QStringList rows;
        for (int row = 0; row < sheet()->list()->count(); ++row) {
            const QListWidgetItem* item = sheet()->list()->item(row);
            const bool heading = item->data(Qt::UserRole + 1).toBool();
            const auto risk = static_cast<Risk>(item->data(Qt::UserRole + 2).toInt());
            rows << (heading ? QStringLiteral("[%1] %2").arg(qtRisk(risk), item->text())
                             : item->text());
        }
        return rows;
    }

    static QString qtRisk(Risk risk) {
        return QString::fromLatin1(info(risk).caseName.data(),
                                   static_cast<qsizetype>(info(risk).caseName.size()));
    }

    AppearanceController appearance{QApplication::palette()};
    std::unique_ptr<AppState> state;
    std::unique_ptr<RootView> window;
};

TEST_F(RemovalUiTest, AReviewOnlyPlanWaitsForTheBox) {
    const PlanItem thesis = file("Documents/thesis.tex", 2'000'000);
    ASSERT_EQ(thesis.verdict.risk, Risk::review);
    state->removal().propose({thesis}, "Delete Items");
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(sheetRows(), QStringList({"[review] 1 · 2 MB", "thesis.tex"}));
    EXPECT_EQ(sheet()->confirmButton()->text(), "Delete");
    EXPECT_FALSE(sheet()->confirmButton()->isEnabled());
    EXPECT_EQ(sheet()->totalLabel()->text(), "Total: Zero KB");
    ASSERT_NE(sheet()->reviewBox(), nullptr);

    // Return presses nothing while the button is off.
    QTest::keyClick(sheet(), Qt::Key_Return);
    EXPECT_TRUE(state->removal().plan());

    sheet()->reviewBox()->setChecked(true);
    EXPECT_TRUE(sheet()->confirmButton()->isEnabled());
    EXPECT_EQ(sheet()->totalLabel()->text(), "Total: 2 MB");
    sheet()->reviewBox()->setChecked(false);
    EXPECT_FALSE(sheet()->confirmButton()->isEnabled());
    EXPECT_EQ(sheet()->totalLabel()->text(), "Total: Zero KB");

    // Ticked, Return deletes: the item goes to this home's Trash and the toast says so.
    sheet()->reviewBox()->setChecked(true);
    QTest::keyClick(sheet(), Qt::Key_Return);
    EXPECT_FALSE(state->removal().plan());
    EXPECT_EQ(sheet(), nullptr);
    ASSERT_TRUE(waitUntil([&] { return state->removal().toast().has_value(); }));
    EXPECT_FALSE(std::filesystem::exists(thesis.path));
    EXPECT_TRUE(std::filesystem::exists(trashFiles + "/thesis.tex"));
    EXPECT_TRUE(window->toast()->isVisible());
    EXPECT_EQ(window->toast()->message()->text(), "2 MB moved to the Trash");
    EXPECT_TRUE(window->toast()->undoButton()->isVisibleTo(window.get()));
}

TEST_F(RemovalUiTest, AProtectedPlanCanOnlyBeCancelled) {
    const PlanItem documents = makePlanItem(home + "/Documents", 5'000'000, Removal::trash);
    const PlanItem desktop = makePlanItem(home + "/Desktop", 1'000'000, Removal::trash);
    test::writeFile(home + "/Documents/keep.txt", 10);
    ASSERT_EQ(documents.verdict.risk, Risk::protected_);
    state->removal().propose({documents, desktop}, "Delete Items");
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(sheet()->reviewBox(), nullptr);
    EXPECT_FALSE(sheet()->confirmButton()->isEnabled());
    EXPECT_EQ(sheet()->totalLabel()->text(), "Total: Zero KB");
    bool noted = false;
    for (const QLabel* label : sheet()->findChildren<QLabel*>()) {
        noted = noted || label->text() == "2 protected item(s) won’t be touched.";
    }
    EXPECT_TRUE(noted);

    QTest::keyClick(sheet(), Qt::Key_Return);
    EXPECT_TRUE(state->removal().plan());
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_FALSE(state->removal().plan());
    EXPECT_EQ(sheet(), nullptr);
    settle();
    EXPECT_TRUE(std::filesystem::exists(home + "/Documents/keep.txt"));
    EXPECT_TRUE(state->removal().history().entries().empty());
}

TEST_F(RemovalUiTest, AMixedPlanBySectionsAndTheSetting) {
    const PlanItem movie = file("Downloads/movie.mkv", 3'000'000);
    const PlanItem thesis = file("Documents/thesis.tex", 2'000'000);
    const PlanItem documents = makePlanItem(home + "/Documents", 9'000'000, Removal::trash);
    ASSERT_EQ(movie.verdict.risk, Risk::safe);
    state->removal().propose({documents, thesis, movie}, "Clean Junk");
    ASSERT_NE(sheet(), nullptr);
    // The thesis lies in the Documents folder of the same plan, so it is left out of it.
    EXPECT_EQ(sheetRows(),
              QStringList({"[safe] 1 · 3 MB", "movie.mkv", "[protected] 1 · 9 MB", "Documents"}));
    EXPECT_TRUE(sheet()->confirmButton()->isEnabled());
    EXPECT_EQ(sheet()->totalLabel()->text(), "Total: 3 MB");
    sheet()->cancelButton()->click();
    EXPECT_FALSE(state->removal().plan());

    state->settings().setPermanentDelete(true);
    state->removal().propose({thesis, movie}, "Delete Items");
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(sheetRows(),
              QStringList({"[safe] 1 · 3 MB", "movie.mkv", "[review] 1 · 2 MB", "thesis.tex"}));
    EXPECT_EQ(sheet()->confirmButton()->text(), "Delete Permanently");
    EXPECT_EQ(sheet()->totalLabel()->text(), "Total: 3 MB");
    sheet()->reviewBox()->setChecked(true);
    EXPECT_EQ(sheet()->totalLabel()->text(), "Total: 5 MB");

    // A newer plan replaces the sheet of the old one.
    const std::string firstId = sheet()->planId();
    state->removal().propose({movie}, "Delete Items");
    ASSERT_NE(sheet(), nullptr);
    EXPECT_NE(sheet()->planId(), firstId);
    EXPECT_FALSE(sheet()->acceptedReview());
}

TEST(ConfirmDeletion, RowsAreFaintWhenTheyWontGo) {
    const struct {
        Risk risk;
        bool accepted;
        double opacity;
    } cases[] = {
        {Risk::safe, false, 1.0},  {Risk::safe, true, 1.0},         {Risk::review, false, 0.55},
        {Risk::review, true, 1.0}, {Risk::protected_, false, 0.55}, {Risk::protected_, true, 0.55},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(planRowOpacity(c.risk, c.accepted), c.opacity)
            << static_cast<int>(c.risk) << c.accepted;
    }
}

TEST_F(RemovalUiTest, ANewerToastKeepsItsFullTime) {
    ToastView* view = window->toast();
    QElapsedTimer clock;
    clock.start();
    state->removal().showToast({"old", "First", std::nullopt, {}});
    EXPECT_TRUE(view->isVisible());
    EXPECT_FALSE(view->undoButton()->isVisibleTo(window.get()));
    EXPECT_FALSE(view->detail()->isVisibleTo(window.get()));
    waitUntil([] { return false; }, 600ms); // the event loop runs on for 0.6 s

    HistoryEntry trashed;
    trashed.trashPath = "/nowhere";
    state->removal().showToast({"new", "Second", "Details in History.", {trashed}});
    const qint64 replacedAt = clock.elapsed();
    EXPECT_EQ(view->message()->text(), "Second");
    EXPECT_TRUE(view->detail()->isVisibleTo(window.get()));
    EXPECT_TRUE(view->undoButton()->isVisibleTo(window.get()));

    // The first toast's timer fires at one second and leaves the second alone.
    waitUntil([] { return false; }, std::chrono::milliseconds(1200 - clock.elapsed()));
    ASSERT_TRUE(state->removal().toast());
    EXPECT_EQ(state->removal().toast()->id, "new");
    ASSERT_TRUE(waitUntil([&] { return !state->removal().toast(); }, 3s));
    EXPECT_GE(clock.elapsed() - replacedAt, 1000);
    EXPECT_TRUE(waitUntil([&] { return !view->isVisible(); }, 2s)); // after its slide out

    state->removal().showToast({"closing", "Third", std::nullopt, {}});
    const QImage done = view->symbol()->grab().toImage();
    state->removal().showToast({"failed", "No file manager answered", std::nullopt, {}, true});
    EXPECT_NE(view->symbol()->grab().toImage(), done); // a warning sign, not the check
    view->closeButton()->click();
    EXPECT_FALSE(state->removal().toast());
}

TEST_F(RemovalUiTest, TheHistoryPage) {
    for (const char* name : {"a.bin", "b.bin", "c.bin", "d.bin"}) {
        test::writeFile(home + "/Downloads/" + name, 600'000);
    }
    const auto request = [&](const char* name, Removal removal) {
        return makeDeletionRequest(home + "/Downloads/" + name, 600'000, removal);
    };
    bool ran = false;
    state->removal().performDeletion(
        {request("a.bin", Removal::trash), request("b.bin", Removal::trash),
         request("c.bin", Removal::trash), request("d.bin", Removal::permanent),
         request("gone.bin", Removal::trash)},
        false, [&](const DeletionReport&) { ran = true; });
    ASSERT_TRUE(waitUntil([&] { return ran; }));
    state->setSection(AppSection::history);
    auto* page = dynamic_cast<HistoryView*>(window->currentPage());
    ASSERT_NE(page, nullptr);

    // b's place is taken again, and c's Trash item is gone.
    test::writeFile(home + "/Downloads/b.bin", 10);
    std::filesystem::remove(trashFiles + "/c.bin");

    // Newest first: the batch in its order. Restore only for a.
    const auto rows = [&] {
        std::vector<std::array<QString, 3>> result;
        for (int row = 0; row < page->model()->rowCount(); ++row) {
            const auto cell = [&](int column) {
                return page->model()->index(row, column).data().toString();
            };
            result.push_back({cell(HistoryModel::item), cell(HistoryModel::method),
                              cell(HistoryModel::restore)});
        }
        return result;
    };
    using Row = std::array<QString, 3>;
    EXPECT_EQ(rows(), (std::vector<Row>{{"a.bin", "Trash", "Restore"},
                                        {"b.bin", "Trash", ""},
                                        {"c.bin", "Trash", ""},
                                        {"d.bin", "Deleted", ""}}));
    EXPECT_EQ(page->model()->index(0, HistoryModel::size).data().toString(), "600 KB");
    EXPECT_EQ(page->model()->index(0, HistoryModel::item).data(HistoryModel::pathRole).toString(),
              "~/Downloads/a.bin");

    // The failure of the vanished file stands above the table.
    EXPECT_TRUE(page->failuresCard()->isVisibleTo(window.get()));
    bool reasonShown = false;
    for (const QLabel* label : page->failuresCard()->findChildren<QLabel*>()) {
        reasonShown = reasonShown || label->text() == "No longer exists.";
    }
    EXPECT_TRUE(reasonShown);

    // A click on "Restore" brings a back, and the row says so.
    QApplication::processEvents();
    QTableView* table = page->table();
    const QRect cell = table->visualRect(page->model()->index(0, HistoryModel::restore));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      QPoint(cell.right() - 20, cell.center().y()));
    EXPECT_TRUE(std::filesystem::exists(home + "/Downloads/a.bin"));
    EXPECT_EQ(rows()[0], (Row{"a.bin", "Restored", ""}));
    ASSERT_TRUE(state->removal().toast());
    EXPECT_EQ(state->removal().toast()->message, "1 item(s) restored");

    QAbstractButton* clear = nullptr;
    for (QPushButton* button : page->findChildren<QPushButton*>()) {
        if (button->text() == "Clear History") {
            clear = button;
        }
    }
    ASSERT_NE(clear, nullptr);
    clear->click();
    EXPECT_EQ(page->model()->rowCount(), 0);
    EXPECT_TRUE(DeletionHistory(DeletionHistory::defaultPath()).entries().empty());
}

TEST_F(RemovalUiTest, TheFailuresCardShowsTheFirstEight) {
    std::vector<DeletionRequest> requests;
    for (int i = 0; i < 11; ++i) {
        requests.push_back(
            makeDeletionRequest(home + "/missing" + std::to_string(i), 1, Removal::trash));
    }
    bool ran = false;
    state->removal().performDeletion(requests, false, [&](const DeletionReport&) { ran = true; });
    ASSERT_TRUE(waitUntil([&] { return ran; }));
    ASSERT_EQ(state->removal().failures().size(), 11u);
    auto* page = dynamic_cast<HistoryView*>(window->page(AppSection::history));
    int reasons = 0;
    for (const QLabel* label : page->failuresCard()->findChildren<QLabel*>()) {
        reasons += label->text() == "No longer exists." ? 1 : 0;
    }
    EXPECT_EQ(reasons, 8);
}

} // namespace
} // namespace dorvik
