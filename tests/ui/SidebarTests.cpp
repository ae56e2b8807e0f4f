#include "UiTest.h"
#include "ui/shell/Sidebar.h"

#include <QListWidget>

namespace dorvik {
namespace {

using SidebarTest = test::UiTest;

// The rows as a user reads them: headings marked with "#".
QStringList rows(const QListWidget& list) {
    QStringList result;
    for (int row = 0; row < list.count(); ++row) {
        const QListWidgetItem* item = list.item(row);
        const bool heading = item->data(Sidebar::sectionRole).toInt() < 0;
        result << (heading ? QStringLiteral("# ") + item->text() : item->text());
    }
    return result;
}

TEST_F(SidebarTest, FifteenSectionsInFiveGroups) {
    auto state = makeState();
    Sidebar sidebar(*state);
    const QStringList expected = {
        "# Simple", "Quick Clean",  "# Analyze",     "Overview",    "Trends",
        "Explorer", "By Type",      "Large & Old",   "System Data", "iCloud Drive",
        "# Apps",   "Applications", "App Leftovers", "Login Items", "# Clean Up",
        "Junk",     "Developer",    "Duplicates",    "# ",          "History",
    };
    EXPECT_EQ(rows(*sidebar.list()), expected);

    // Headings take no selection; every row carries an icon that draws.
    for (int row = 0; row < sidebar.list()->count(); ++row) {
        const QListWidgetItem* item = sidebar.list()->item(row);
        if (item->data(Sidebar::sectionRole).toInt() < 0) {
            EXPECT_FALSE(item->flags() & Qt::ItemIsSelectable) << item->text().toStdString();
        } else {
            EXPECT_FALSE(item->icon().pixmap(16, 16).isNull()) << item->text().toStdString();
        }
    }
}

TEST_F(SidebarTest, TheSelectionIsTheSection) {
    auto state = makeState();
    Sidebar sidebar(*state);
    EXPECT_EQ(sidebar.list()->currentItem()->text(), "Quick Clean");

    const struct {
        QString row;
        AppSection section;
    } cases[] = {
        {"History", AppSection::history},
        {"iCloud Drive", AppSection::cloud},
        {"Large & Old", AppSection::large},
        {"Quick Clean", AppSection::smartClean},
    };
    for (const auto& c : cases) {
        const auto found = sidebar.list()->findItems(c.row, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1);
        sidebar.list()->setCurrentItem(found.front());
        EXPECT_EQ(state->section(), c.section) << c.row.toStdString();
    }

    state->setSection(AppSection::duplicates);
    EXPECT_EQ(sidebar.list()->currentItem()->text(), "Duplicates");
}

} // namespace
} // namespace dorvik
