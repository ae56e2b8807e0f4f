// The explorer over a real scan: walking down and back up by the list, the crumbs and the map,
// the notes on a folder, the mode kept between runs, and a removal of the folder on show.

#include "NodeShapes.h"
#include "UiTest.h"
#include "base/TextForms.h"
#include "ui/files/FilesTable.h"
#include "ui/pages/explorer/Breadcrumbs.h"
#include "ui/pages/explorer/ExplorerView.h"
#include "ui/pages/explorer/MapSidePanel.h"
#include "ui/pages/explorer/SunburstView.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SelectionBar.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace dorvik {
namespace {

std::vector<std::string> rowNames(const ExplorerView& page) {
    std::vector<std::string> names;
    for (const auto& node : page.table()->nodeModel()->nodes()) {
        names.push_back(node->name);
    }
    return names;
}

std::vector<std::string> stackNames(const AppState& state) {
    std::vector<std::string> names;
    for (const auto& node : state.explorerStack()) {
        names.push_back(node->name);
    }
    return names;
}

class ExplorerTest : public test::UiTest {
protected:
    void SetUp() override {
        test::UiTest::SetUp();
        test::writeFile(dir / "disk/Big/inner/film.mov", 2'000'000);
        test::writeFile(dir / "disk/Big/one.txt", 5'000);
        test::writeFile(dir / "disk/Big/two.txt", 7'000);
        test::writeFile(dir / "disk/Small/photo.jpg", 700'000);
        test::writeFile(dir / "disk/loose.bin", 600'000);
        state = makeState();
        scanFolder(*state, dir / "disk");
    }

    std::unique_ptr<AppState> state;
};

TEST_F(ExplorerTest, TheListWalksDownAndTheCrumbsAndBackButtonComeBack) {
    ExplorerView page(*state);
    page.show();
    EXPECT_EQ(rowNames(page), (std::vector<std::string>{"Big", "Small", "loose.bin"}));
    EXPECT_FALSE(page.breadcrumbs()->backButton()->isEnabled());

    // A file opens nothing; a folder is pushed.
    page.table()->onActivated(page.table()->nodeModel()->node(2));
    EXPECT_EQ(stackNames(*state).size(), 1u);
    page.table()->onActivated(page.table()->nodeModel()->node(0));
    EXPECT_EQ(stackNames(*state), (std::vector<std::string>{dir / "disk", "Big"}));
    EXPECT_EQ(rowNames(page), (std::vector<std::string>{"inner"}));
    EXPECT_TRUE(page.smallFilesNote()->isVisible());
    const int64_t smallBytes = test::allocatedBytes(dir / "disk/Big/one.txt") +
                               test::allocatedBytes(dir / "disk/Big/two.txt");
    EXPECT_EQ(page.smallFilesNote()->text().toStdString(),
              "Also: 2 small files directly in this folder · " + TextForms::size(smallBytes));
    page.open(page.table()->nodeModel()->node(0));
    ASSERT_EQ(page.breadcrumbs()->crumbs().size(), 3);
    EXPECT_EQ(page.breadcrumbs()->crumbs()[2]->text(), "inner");
    EXPECT_FALSE(page.smallFilesNote()->isVisible());

    page.breadcrumbs()->crumbs()[1]->click();
    EXPECT_EQ(stackNames(*state), (std::vector<std::string>{dir / "disk", "Big"}));
    page.breadcrumbs()->backButton()->click();
    EXPECT_EQ(stackNames(*state), (std::vector<std::string>{dir / "disk"}));
    test::settle(); // the crumbs pressed are let go after their click
}

TEST_F(ExplorerTest, TheMapFollowsTheOpenFolderAndItsCentreGoesUp) {
    ExplorerView page(*state);
    page.setMode(ExplorerMode::map);
    page.show();
    ASSERT_NE(page.sunburst()->root(), nullptr);
    EXPECT_EQ(page.sunburst()->root()->name, dir / "disk");
    ASSERT_FALSE(page.sunburst()->arcs().empty());

    const FileNodePtr big = page.sunburst()->arcs().front().node;
    EXPECT_EQ(big->name, "Big");
    page.sunburst()->onOpen(big);
    EXPECT_EQ(page.sunburst()->root(), big);
    EXPECT_EQ(page.sidePanel()->current(), big);
    page.sunburst()->onSelect(big->children.front());
    EXPECT_EQ(page.sidePanel()->listed()->name, "inner");
    page.sunburst()->onUp();
    EXPECT_EQ(page.sunburst()->root()->name, dir / "disk");
    page.sunburst()->onUp(); // at the top, nothing above
    EXPECT_EQ(state->explorerStack().size(), 1u);
}

TEST_F(ExplorerTest, TheModeIsKeptForTheNextRun) {
    {
        ExplorerView page(*state);
        EXPECT_EQ(page.mode(), ExplorerMode::list);
        page.modePicker()->segment(1)->click();
        EXPECT_EQ(page.mode(), ExplorerMode::map);
    }
    EXPECT_EQ(QSettings(settingsOrganisation, settingsApplication).value("explorerMode"), "map");
    ExplorerView again(*state);
    EXPECT_EQ(again.mode(), ExplorerMode::map);
    EXPECT_EQ(again.modePicker()->chosen(), static_cast<int>(ExplorerMode::map));
}

TEST_F(ExplorerTest, ARemovedFolderGivesWayToItsParentAndAPlanNamesTheSelection) {
    ExplorerView page(*state);
    page.show();
    page.table()->onActivated(page.table()->nodeModel()->node(0)); // Big
    page.open(page.table()->nodeModel()->node(0));                 // Big/inner
    state->markRemoved({dir / "disk/Big/inner"});
    EXPECT_EQ(stackNames(*state), (std::vector<std::string>{dir / "disk", "Big"}));
    EXPECT_TRUE(rowNames(page).empty());

    page.breadcrumbs()->backButton()->click();
    // Big lost its film, so it sorts last now.
    EXPECT_EQ(rowNames(page), (std::vector<std::string>{"Small", "loose.bin", "Big"}));
    page.table()->selectRow(0);
    SelectionBar* bar = page.selectionBar();
    EXPECT_TRUE(bar->isVisible());
    bar->actionButton()->click();
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->title, "Delete Items");
    ASSERT_EQ(state->removal().plan()->items.size(), 1u);
    EXPECT_EQ(state->removal().plan()->items[0].path, dir / "disk/Small");
    test::settle();
}

TEST_F(ExplorerTest, AnUnreadableFolderSaysSo) {
    ExplorerView page(*state);
    page.show();
    EXPECT_FALSE(page.unreadableNote()->isVisible());
    // The walk marks a folder it could not list; here the mark is set by hand, since root (as
    // the tests may run) reads every folder.
    const FileNodePtr small = test::findNode(state->scan()->root, "Small");
    small->unreadable = true;
    page.open(small);
    EXPECT_TRUE(page.unreadableNote()->isVisible());
    page.up();
    EXPECT_FALSE(page.unreadableNote()->isVisible());
}

} // namespace
} // namespace dorvik
