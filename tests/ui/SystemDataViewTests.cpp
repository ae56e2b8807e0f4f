#include "UiTest.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "scanning/MeasureFolder.h"
#include "ui/QtText.h"
#include "ui/pages/system/SystemDataRow.h"
#include "ui/pages/system/SystemDataView.h"
#include "ui/widgets/ScanningRing.h"
#include "ui/widgets/StatTile.h"

#include <QPushButton>

#include <sys/stat.h>

namespace dorvik {
namespace {

using test::showsText;
using test::waitUntil;

class SystemDataViewTest : public test::UiTest {
protected:
    // A computer's root in the test's folder, with two places and a snapper of its own.
    SystemDataSources sources() {
        test::writeFile(dir / "root/Library/Caches/a", 600000);
        test::writeFile(dir / "root/var/cache/apt/archives/b.deb", 900000);
        test::writeText(dir / "root/usr/bin/snapper",
                        "#!/bin/sh\nprintf 'number,date\\n0,\\n7,2024-03-01 08:00:00\\n"
                        "9,2024-03-02 08:00:00\\n'\n");
        chmod((dir / "root/usr/bin/snapper").c_str(), 0755);
        SystemDataSources result;
        result.measuring.filesystemRoot = dir / "root";
        result.tools = {dir / "root/usr/bin/tmutil", dir / "root/usr/bin/snapper"};
        result.privileged = [this](const std::vector<std::string>& argv) {
            commands.push_back(argv);
            return platform::ToolRun{true, 126, "", ""};
        };
        return result;
    }

    std::vector<std::vector<std::string>> commands;
};

TEST_F(SystemDataViewTest, ShowsThePartsTheTilesAndTheSnapshotsOnceMeasured) {
    auto state = makeState();
    state->systemData().setSources(sources());
    SystemDataView view(*state);
    view.resize(1000, 900);
    view.show();
    EXPECT_TRUE(view.spinner()->isVisibleTo(&view));
    ASSERT_TRUE(waitUntil([&] { return !state->systemData().isLoading(); }));
    test::settle(); // rows added to a shown page show on the next turn of the loop
    EXPECT_FALSE(view.spinner()->isVisibleTo(&view));

    // Largest first, each with the way to show it in the file manager; /var/cache itself is what
    // is left of it beside apt's cache.
    ASSERT_EQ(view.componentRows().size(), 3u);
    EXPECT_TRUE(showsText(view.componentRows()[0], shownText("Downloaded packages (apt)")));
    EXPECT_TRUE(showsText(view.componentRows()[1], shownText("Shared caches")));
    EXPECT_TRUE(showsText(view.componentRows()[2], shownText("Other system caches")));
    for (SystemDataRow* row : view.componentRows()) {
        ASSERT_NE(row->revealButton(), nullptr);
    }

    // This volume purges nothing on demand, so no "Purgeable" tile.
    const std::vector<StatTile*> tiles = view.tiles();
    ASSERT_EQ(tiles.size(), 2u);
    EXPECT_EQ(tiles[0]->value(), "2");
    const int64_t sum = measureFolder(dir / "root/Library/Caches").bytes +
                        measureFolder(dir / "root/var/cache").bytes;
    EXPECT_EQ(tiles[1]->value(), qtText(TextForms::size(sum)));

    ASSERT_EQ(view.deleteButtons().size(), 2u);
    EXPECT_FALSE(view.noSnapshots()->isVisibleTo(&view));
    EXPECT_FALSE(view.snapshotMessage()->isVisibleTo(&view));
    EXPECT_TRUE(showsText(&view, qtText(snapshotTitle(state->systemData().snapshots()[0]))));

    // The prompt dismissed: the amber line says so, and the list is read again.
    view.deleteButtons()[0]->click();
    ASSERT_TRUE(waitUntil([&] { return !state->systemData().isDeleting(); }));
    test::settle();
    EXPECT_TRUE(view.snapshotMessage()->isVisibleTo(&view));
    EXPECT_EQ(view.snapshotMessage()->text(), "Cancelled.");
    view.snapshotMessage()->ensurePolished();
    EXPECT_EQ(view.snapshotMessage()->palette().color(QPalette::WindowText),
              Style::warning(view.palette()));
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_EQ(commands[0].back(), dir / "root/usr/bin/snapper" + " delete 9");
    EXPECT_EQ(view.deleteButtons().size(), 2u);
}

TEST_F(SystemDataViewTest, SaysSoWhenNoSnapshotIsKept) {
    auto state = makeState();
    SystemDataSources empty = sources();
    empty.tools.snapper = dir / "root/usr/bin/missing";
    state->systemData().setSources(empty);
    SystemDataView view(*state);
    view.show();
    ASSERT_TRUE(waitUntil([&] { return !state->systemData().isLoading(); }));
    EXPECT_TRUE(view.noSnapshots()->isVisibleTo(&view));
    EXPECT_TRUE(view.deleteButtons().empty());
    EXPECT_EQ(view.tiles()[0]->value(), "0");
}

} // namespace
} // namespace dorvik
