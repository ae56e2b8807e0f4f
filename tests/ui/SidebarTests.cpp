#include "UiTest.h"
#include "ui/Appearance.h"
#include "ui/shell/Sidebar.h"

#include <QApplication>
#include <QListWidget>
#include <QPainter>
#include <QStyleOptionViewItem>

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

// The lightest and the darkest pixel of a row as drawn.
struct RowColours {
    QColor background; // at the row's right end, where no text reaches
    int darkestText = 255;
    int lightestText = 0;
};

RowColours drawRow(const Sidebar& sidebar, int row, QStyle::State state) {
    const QListWidget& list = *sidebar.list();
    QStyleOptionViewItem option;
    option.initFrom(list.viewport());
    option.rect = QRect(0, 0, 220, 30);
    option.state = QStyle::State_Enabled | state;
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(sidebar.palette().color(QPalette::Window));
    {
        QPainter painter(&image);
        list.itemDelegate()->paint(&painter, option, list.model()->index(row, 0));
    }
    RowColours colours;
    colours.background = image.pixelColor(200, 15);
    // The text runs from after the icon; its strokes are the pixels farthest from the ground.
    for (int y = 8; y < 22; ++y) {
        for (int x = 44; x < 120; ++x) {
            const int lightness = image.pixelColor(x, y).lightness();
            colours.darkestText = std::min(colours.darkestText, lightness);
            colours.lightestText = std::max(colours.lightestText, lightness);
        }
    }
    return colours;
}

TEST_F(SidebarTest, AHoveredRowStaysReadableInEitherAppearance) {
    AppearanceController appearance{QApplication::palette()};
    auto state = makeState();
    for (AppAppearance choice : {AppAppearance::light, AppAppearance::dark}) {
        appearance.apply(choice);
        Sidebar sidebar(*state);
        sidebar.resize(230, 700);
        sidebar.show();
        test::settle();
        const auto found = sidebar.list()->findItems("Trends", Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1);
        const int row = sidebar.list()->row(found.front());
        const RowColours plain = drawRow(sidebar, row, {});
        const RowColours hovered = drawRow(sidebar, row, QStyle::State_MouseOver);
        const int ground = hovered.background.lightness();
        const char* name = info(choice).rawValue.data();
        // The hover is a light shade on a light sidebar and a dark one on a dark sidebar, a
        // little apart from the ground it lies on.
        if (choice == AppAppearance::light) {
            EXPECT_GT(ground, 190) << name;
            EXPECT_LT(hovered.darkestText, 90) << name;
        } else {
            EXPECT_LT(ground, 90) << name;
            EXPECT_GT(hovered.lightestText, 190) << name;
        }
        EXPECT_NE(hovered.background, plain.background) << name;
        EXPECT_LT(std::abs(ground - plain.background.lightness()), 60) << name;
    }
    appearance.apply(AppAppearance::light);
}

} // namespace
} // namespace dorvik
