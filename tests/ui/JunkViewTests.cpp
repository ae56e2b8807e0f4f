// The Junk page in the real window, over the real junk finder and a home of the test's own.

#include "base/TextForms.h"
#include "removal/SafetyRules.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TestHome.h"
#include "ui/Appearance.h"
#include "ui/QtText.h"
#include "ui/pages/junk/JunkRuleRow.h"
#include "ui/pages/junk/JunkView.h"
#include "ui/shell/RootView.h"
#include "ui/shell/ToastView.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik {
namespace {

using namespace std::chrono_literals;
using test::settle;
using test::waitUntil;

class JunkViewTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        test::writeFile(cacheA, 300000);
        test::writeFile(cacheB, 100000);
        test::writeFile(logs, 50000);
        test::writeFile(trashed, 40000);
        test::writeFile(installer, 120000);
        test::setModificationTime(installer, 1'600'000'000);
    }
    void TearDown() override {
        settle();
        window.reset();
        state.reset();
    }

    // Opens the window on the Junk page and waits for its first load.
    void openPage() {
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
        window = std::make_unique<RootView>(*state, appearance, 1s);
        window->resize(1100, 720);
        window->show();
        state->setSection(AppSection::junk);
        page = dynamic_cast<JunkView*>(window->page(AppSection::junk));
        ASSERT_NE(page, nullptr);
        EXPECT_TRUE(page->showsSearching());
        ASSERT_TRUE(waitUntil([&] { return !state->junk().isLoading(); }));
        settle();
        EXPECT_FALSE(page->showsSearching());
    }

    JunkRuleRow* row(const std::string& ruleID) const {
        const auto& rows = page->rows();
        const auto found = std::ranges::find_if(
            rows, [&](const JunkRuleRow* each) { return each->finding().rule.id == ruleID; });
        return found == rows.end() ? nullptr : *found;
    }

    const std::string cacheA = home + "/Library/Caches/com.example.a";
    const std::string cacheB = home + "/Library/Caches/com.example.b";
    const std::string logs = home + "/Library/Logs/app.log";
    const std::string trashed = home + "/.Trash/Old Report.pdf";
    const std::string installer = home + "/Downloads/Setup.dmg";
    AppearanceController appearance{QApplication::palette()};
    std::unique_ptr<AppState> state;
    std::unique_ptr<RootView> window;
    JunkView* page = nullptr;
};

TEST_F(JunkViewTest, TheFirstLoadSelectsEverythingAndARuleIsTickedWhenAllItsItemsAre) {
    openPage();
    EXPECT_EQ(page->selected(), (std::set<std::string>{cacheA, cacheB, logs, trashed, installer}));
    EXPECT_TRUE(page->cleanButton()->isEnabled());
    // The groups in their order, the rules of a group in the finder's order.
    std::vector<std::string> shownRules;
    for (const JunkRuleRow* each : page->rows()) {
        shownRules.push_back(each->finding().rule.id);
        EXPECT_TRUE(each->ruleCheckBox()->isChecked()) << each->finding().rule.id;
    }
    EXPECT_EQ(shownRules,
              (std::vector<std::string>{"user-caches", "user-logs", "trash", "old-installers"}));

    JunkRuleRow* caches = row("user-caches");
    ASSERT_NE(caches, nullptr);
    EXPECT_TRUE(caches->itemCheckBoxes().empty());
    QTest::mouseClick(caches->expandButton(), Qt::LeftButton);
    EXPECT_EQ(caches->expandButton()->text(), "Collapse");
    ASSERT_EQ(caches->itemCheckBoxes().size(), 2u);
    QCheckBox* first = caches->itemCheckBoxes()[0];
    QCheckBox* second = caches->itemCheckBoxes()[1];

    const struct {
        QCheckBox* click;
        bool ruleTicked;
        bool firstTicked;
        bool secondTicked;
    } steps[] = {
        {first, false, false, true},    // one item out: the rule is no longer ticked
        {first, true, true, true},      // back in: all are, so the rule is
        {nullptr, false, false, false}, // the rule's box takes all its items out
        {nullptr, true, true, true},    // and puts them all back
        {second, false, true, false},
        {nullptr, true, true, true}, // from a partial selection, the box selects all
    };
    for (const auto& step : steps) {
        QTest::mouseClick(step.click != nullptr ? step.click : caches->ruleCheckBox(),
                          Qt::LeftButton, {}, QPoint(8, 8));
        EXPECT_EQ(caches->ruleCheckBox()->isChecked(), step.ruleTicked);
        EXPECT_EQ(first->isChecked(), step.firstTicked);
        EXPECT_EQ(second->isChecked(), step.secondTicked);
        EXPECT_EQ(page->selected().contains(cacheA), step.firstTicked);
        EXPECT_EQ(page->selected().contains(cacheB), step.secondTicked);
    }

    // Each item offers to show itself in the file manager.
    QWidget* itemRow = first->parentWidget();
    emit itemRow->customContextMenuRequested(QPoint(4, 4));
    const auto* menu = itemRow->findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    ASSERT_FALSE(menu->actions().isEmpty());
    EXPECT_EQ(menu->actions().front()->text(), "Show in Finder");
    EXPECT_EQ(itemRow->toolTip(), "~/Library/Caches/com.example.a");

    QTest::mouseClick(caches->expandButton(), Qt::LeftButton);
    EXPECT_EQ(caches->expandButton()->text(), "Expand");
    EXPECT_FALSE(first->isVisible());
}

TEST_F(JunkViewTest, CleanJunkProposesTheSelectionInFindingOrderAndTheListFollowsTheRemoval) {
    openPage();
    QTest::mouseClick(row("user-logs")->ruleCheckBox(), Qt::LeftButton, {}, QPoint(8, 8));
    QTest::mouseClick(page->cleanButton(), Qt::LeftButton);

    const auto& plan = state->removal().plan();
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->title, "Clean Junk");
    struct Expected {
        std::string path;
        std::string name;
        Removal removal;
        Risk risk;
    };
    // Largest finding first; the logs were left out.
    const std::vector<Expected> expected = {
        {cacheA, "com.example.a", Removal::permanent, Risk::safe},
        {cacheB, "com.example.b", Removal::permanent, Risk::safe},
        {installer, "Setup.dmg", Removal::trash, Risk::review},
        {trashed, "Old Report.pdf", Removal::permanent, Risk::safe},
    };
    ASSERT_EQ(plan->items.size(), expected.size());
    for (size_t index = 0; index < expected.size(); ++index) {
        const PlanItem& item = plan->items[index];
        EXPECT_EQ(item.path, expected[index].path);
        EXPECT_EQ(item.name, expected[index].name);
        EXPECT_EQ(item.removal, expected[index].removal) << item.path;
        EXPECT_EQ(item.verdict.risk, expected[index].risk) << item.path;
        EXPECT_EQ(item.verdict, SafetyRules::verdict(item.path));
        EXPECT_GT(item.size, 0);
    }

    state->removal().execute(*plan, false);
    ASSERT_TRUE(waitUntil([&] { return state->removal().toast().has_value(); }));
    settle();
    EXPECT_FALSE(test::entryExists(cacheA));
    EXPECT_TRUE(test::entryExists(installer)); // a review item, not accepted
    // The gone items leave the page without a new search; what is left keeps its ticks.
    EXPECT_EQ(row("user-caches"), nullptr);
    EXPECT_EQ(row("trash"), nullptr);
    EXPECT_NE(row("user-logs"), nullptr);
    EXPECT_EQ(page->selected(), std::set<std::string>{installer});
    EXPECT_TRUE(row("old-installers")->ruleCheckBox()->isChecked());
    EXPECT_FALSE(row("user-logs")->ruleCheckBox()->isChecked());

    QTest::mouseClick(row("old-installers")->ruleCheckBox(), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_FALSE(page->cleanButton()->isEnabled());
}

TEST_F(JunkViewTest, AnOpenRuleListsThreeHundredItemsThenSaysHowManyMore) {
    for (int index = 0; index < 305; ++index) {
        test::writeFile(home + "/Library/Caches/small-" + std::to_string(index) + "/blob", 4096);
    }
    openPage();
    JunkRuleRow* caches = row("user-caches");
    ASSERT_NE(caches, nullptr);
    QTest::mouseClick(caches->expandButton(), Qt::LeftButton);
    EXPECT_EQ(caches->itemCheckBoxes().size(), 300u);
    const QList<QLabel*> labels = caches->findChildren<QLabel*>();
    EXPECT_TRUE(std::ranges::any_of(labels, [](const QLabel* label) {
        return label->text() == "7 more" && label->isVisible();
    }));
    EXPECT_TRUE(std::ranges::any_of(labels, [](const QLabel* label) {
        return label->text() == "307 items · Deleted immediately";
    }));
}

TEST_F(JunkViewTest, ScanAgainLooksAfresh) {
    openPage();
    test::writeFile(home + "/Library/Caches/com.example.new", 70000);
    QTest::mouseClick(page->scanAgainButton(), Qt::LeftButton);
    EXPECT_TRUE(page->showsSearching());
    ASSERT_TRUE(waitUntil([&] { return !state->junk().isLoading(); }));
    EXPECT_EQ(row("user-caches")->finding().items.size(), 3u);
}

} // namespace
} // namespace dorvik
