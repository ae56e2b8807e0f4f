#include "NodeShapes.h"
#include "UiTest.h"
#include "base/TextForms.h"
#include "ui/QtText.h"
#include "ui/pages/explorer/MapSidePanel.h"
#include "ui/pages/explorer/SunburstView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace dorvik {
namespace {

using test::build;
using test::deleted;
using test::file;
using test::findNode;
using test::folder;

// A pointer that moves over the view with no button held, as the window system reports it.
void movePointer(QWidget& widget, QPoint position) {
    QMouseEvent move(QEvent::MouseMove, position, widget.mapToGlobal(position), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
}

void leave(QWidget& widget) {
    QEvent left(QEvent::Leave);
    QApplication::sendEvent(&widget, &left);
}

std::string nameOf(const FileNodePtr& node) {
    return node != nullptr ? node->name : "";
}

// 300 pixels square with five rings: each ring is 25 pixels wide around (150, 150).
constexpr QPoint centre(150, 150);
constexpr QPoint firstRingAtTwelve(150, 113);
constexpr QPoint firstRingAtThree(187, 150);
constexpr QPoint firstRingAtNine(113, 150);
constexpr QPoint secondRingAtTwelve(150, 88);
constexpr QPoint corner(5, 5);

TEST(SunburstView, PointerAndClicksReachThePage) {
    // "a" takes 0.6 of the turn from 12 o'clock, "b" the rest.
    const FileNodePtr top = build(
        folder("top", 2000,
               {folder("root", 1000, {folder("a", 600, {file("a1", 600)}), file("b", 400)})}));
    const FileNodePtr root = findNode(top, "root");
    SunburstView view;
    view.setFixedSize(300, 300);
    view.setRoot(root);
    ASSERT_EQ(view.arcs().size(), 3u);

    std::vector<std::string> selected;
    std::vector<std::string> opened;
    int ups = 0;
    view.onSelect = [&](const FileNodePtr& node) { selected.push_back(nameOf(node)); };
    view.onOpen = [&](const FileNodePtr& node) { opened.push_back(nameOf(node)); };
    view.onUp = [&] { ++ups; };

    const struct {
        QPoint at;
        std::string hovered;
    } moves[] = {
        {firstRingAtTwelve, "a"},
        {firstRingAtThree, "a"},
        {firstRingAtNine, "b"},
        {secondRingAtTwelve, "a1"},
        {centre, ""},
        {corner, ""},
        {firstRingAtNine, "b"},
    };
    for (const auto& move : moves) {
        movePointer(view, move.at);
        EXPECT_EQ(nameOf(view.hovered()), move.hovered) << move.at.x() << "," << move.at.y();
    }
    // Only changes are told: staying on "a", and going from the centre to the corner, are not.
    EXPECT_EQ(selected, (std::vector<std::string>{"a", "b", "a1", "", "b"}));

    // A file's arc opens nothing; a folder's opens it; the centre goes up.
    QTest::mouseClick(&view, Qt::LeftButton, {}, firstRingAtNine);
    QTest::mouseClick(&view, Qt::LeftButton, {}, firstRingAtTwelve);
    QTest::mouseClick(&view, Qt::RightButton, {}, secondRingAtTwelve);
    QTest::mouseClick(&view, Qt::LeftButton, {}, corner);
    EXPECT_EQ(opened, (std::vector<std::string>{"a"}));
    EXPECT_EQ(ups, 0);
    QTest::mouseClick(&view, Qt::LeftButton, {}, centre);
    EXPECT_EQ(ups, 1);

    // Leaving tells there is nothing, whether something was hovered or not.
    movePointer(view, firstRingAtTwelve);
    selected.clear();
    leave(view);
    leave(view);
    EXPECT_EQ(view.hovered(), nullptr);
    EXPECT_EQ(selected, (std::vector<std::string>{"", ""}));

    // Removing "a" and laying out again: "b" takes the whole turn under the still pointer.
    movePointer(view, firstRingAtTwelve);
    selected.clear();
    findNode(root, "a")->deleted = true;
    root->size = 400;
    view.relayout();
    EXPECT_EQ(nameOf(view.hovered()), "b");
    EXPECT_EQ(selected, (std::vector<std::string>{"b"}));
    ASSERT_EQ(view.arcs().size(), 1u);

    // A new root is laid out at once.
    view.setRoot(findNode(root, "a"));
    EXPECT_EQ(nameOf(view.hovered()), "a1");
    ASSERT_EQ(view.arcs().size(), 1u);
    EXPECT_EQ(view.arcs()[0].node->name, "a1");
}

TEST(MapSidePanel, EveryShareHasRoomForItsWholeText) {
    const FileNodePtr root = build(folder(
        "root", 100000000, {file("all", 99950000), file("half", 5000000), file("sliver", 50000)}));
    MapSidePanel panel;
    panel.setCurrent(root);
    panel.show();
    QStringList shares;
    for (const QLabel* label : panel.findChildren<QLabel*>()) {
        if (label->isVisible() && label->text().endsWith('%')) {
            shares << label->text();
            EXPECT_GE(label->contentsRect().width(),
                      label->fontMetrics().horizontalAdvance(label->text()))
                << label->text().toStdString();
        }
    }
    EXPECT_TRUE(shares.contains("<0.1%")) << shares.join(' ').toStdString();
    EXPECT_TRUE(shares.contains("100%")) << shares.join(' ').toStdString();
}

TEST(MapSidePanel, ListsTheLargestItemsOfTheFocusOrTheCurrentFolder) {
    std::vector<test::NodeShape> many;
    for (int i = 1; i <= 12; ++i) {
        many.push_back(file("f" + std::to_string(i), i * 1000000));
    }
    many.push_back(deleted(file("gone", 99000000)));
    const FileNodePtr root =
        build(folder("root", 200000000,
                     {folder("many", 78000000, many), folder("pair", 4000000, {file("x", 3000000)}),
                      file("lone", 2000000)}));
    const FileNodePtr pair = findNode(root, "pair");

    MapSidePanel panel;
    std::vector<std::string> revealed;
    panel.onReveal = [&](const FileNodePtr& node) { revealed.push_back(nameOf(node)); };
    QPushButton* reveal = test::visibleButton<QPushButton>(&panel, "Show in Finder");
    ASSERT_NE(reveal, nullptr);
    EXPECT_FALSE(reveal->isEnabled());

    auto names = [&panel] {
        std::vector<std::string> result;
        for (const FileNodePtr& item : panel.items()) {
            result.push_back(item->name);
        }
        return result;
    };
    const struct {
        std::string current;
        std::string focus; // empty for none
        std::vector<std::string> items;
    } cases[] = {
        {"root", "", {"many", "pair", "lone"}},
        {"many", "", {"f12", "f11", "f10", "f9", "f8", "f7", "f6", "f5", "f4", "f3"}},
        {"root", "pair", {"x"}},
        {"root", "lone", {}},
        {"root", "", {"many", "pair", "lone"}},
    };
    for (const auto& c : cases) {
        panel.setCurrent(findNode(root, c.current));
        panel.setFocusNode(c.focus.empty() ? nullptr : findNode(root, c.focus));
        EXPECT_EQ(names(), c.items) << c.current << " / " << c.focus;
        reveal->click();
        EXPECT_EQ(revealed.back(), c.focus.empty() ? c.current : c.focus);
    }

    // Shares are of the listed folder: 3 MB of the pair's 4 MB.
    panel.setFocusNode(pair);
    EXPECT_TRUE(test::showsText(&panel, "75%"));
    EXPECT_TRUE(test::showsText(&panel, qtText(TextForms::size(3000000))));

    // A removal shows once the panel reads the tree again.
    findNode(root, "x")->deleted = true;
    panel.refresh();
    EXPECT_TRUE(panel.items().empty());
}

} // namespace
} // namespace dorvik
