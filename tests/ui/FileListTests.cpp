// The file lists: the table's sort, the filter bar, the node menu, the preview, and the two pages
// over a real scan of real files.

#include "UiTest.h"
#include "scanning/MarkRemoved.h"
#include "ui/files/FileListPanel.h"
#include "ui/files/FilesTable.h"
#include "ui/files/FilterBar.h"
#include "ui/files/FolderLineDelegate.h"
#include "ui/files/NodeActions.h"
#include "ui/files/NodeTableModel.h"
#include "ui/files/PreviewWindow.h"
#include "ui/files/SortHeader.h"
#include "ui/pages/large/LargeFilesView.h"
#include "ui/pages/types/KindTile.h"
#include "ui/pages/types/TypesView.h"
#include "ui/widgets/PictureView.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QTest>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>

#include <ctime>
#include <tuple>

namespace dorvik {
namespace {

using test::settle;

FileNodePtr node(const FileNodePtr& parent, const std::string& name, bool directory = false,
                 FileKind kind = FileKind::other, StorageBucket bucket = StorageBucket::other) {
    auto made = std::make_shared<FileNode>(name, directory, false, kind, bucket);
    if (parent) {
        FileNode::adopt(parent, made);
    }
    return made;
}

std::vector<std::string> names(const std::vector<FileNodePtr>& nodes) {
    std::vector<std::string> result;
    for (const auto& each : nodes) {
        result.push_back(each->name);
    }
    return result;
}

QStringList actionTexts(const QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions()) {
        if (!action->isSeparator()) {
            texts << action->text();
        }
    }
    return texts;
}

QAction* actionNamed(const QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
        if (action->text() == text) {
            return action;
        }
    }
    return nullptr;
}

class FileListTest : public test::UiTest {};

TEST_F(FileListTest, EveryColumnSortsBothWaysAndRiskNotAtAll) {
    const auto root = node(nullptr, "/r", true);
    struct Row {
        const char* name;
        int64_t size;
        int64_t files;
        FileKind kind;
        StorageBucket bucket;
        double modified;
        double accessed;
    };
    for (const Row& row : {
             Row{"beta", 300, 1, FileKind::video, StorageBucket::documents, 20, 5},
             Row{"Alpha", 100, 3, FileKind::audio, StorageBucket::video, 30, 6},
             Row{"alpha", 200, 2, FileKind::image, StorageBucket::other, 10, 4},
         }) {
        const auto made = node(root, row.name, false, row.kind, row.bucket);
        made->size = row.size;
        made->fileCount = row.files;
        made->modified = row.modified;
        made->accessed = row.accessed;
    }
    NodeTableModel model({NodeColumn::name, NodeColumn::size, NodeColumn::files, NodeColumn::kind,
                          NodeColumn::category, NodeColumn::modified, NodeColumn::lastOpened,
                          NodeColumn::risk});
    model.setNodes(root->children);
    EXPECT_EQ(names(model.nodes()), (std::vector<std::string>{"beta", "alpha", "Alpha"}))
        << "largest first before any click";

    const struct {
        NodeColumn column;
        std::vector<std::string> rising;
    } cases[] = {
        // Case is ignored first, so the two alphas stand together, capital first.
        {NodeColumn::name, {"Alpha", "alpha", "beta"}},
        {NodeColumn::size, {"Alpha", "alpha", "beta"}},
        {NodeColumn::files, {"beta", "alpha", "Alpha"}},
        {NodeColumn::kind, {"Alpha", "alpha", "beta"}},     // Audio, Images, Video
        {NodeColumn::category, {"beta", "alpha", "Alpha"}}, // Documents, Other, Video
        {NodeColumn::modified, {"alpha", "beta", "Alpha"}},
        {NodeColumn::lastOpened, {"alpha", "beta", "Alpha"}},
    };
    for (const auto& [column, rising] : cases) {
        model.sort(model.columnOf(column), Qt::AscendingOrder);
        EXPECT_EQ(names(model.nodes()), rising) << model.columnOf(column);
        model.sort(model.columnOf(column), Qt::DescendingOrder);
        EXPECT_EQ(names(model.nodes()), std::vector<std::string>(rising.rbegin(), rising.rend()))
            << model.columnOf(column);
    }
    const std::vector<std::string> before = names(model.nodes());
    model.sort(model.columnOf(NodeColumn::risk), Qt::AscendingOrder);
    EXPECT_EQ(names(model.nodes()), before);
    EXPECT_EQ(model.sortColumn(), NodeColumn::lastOpened);

    // New rows come in the sort in force.
    model.setNodes({root->children[1], root->children[0]});
    EXPECT_EQ(names(model.nodes()), (std::vector<std::string>{"Alpha", "beta"}));
}

// Which way the arrow the style draws for this option points: the triangle's wide side is where
// it comes from.
enum class Pointing { up, down, nowhere };
Pointing arrowPointing(const QWidget& header, QStyleOptionHeader option) {
    constexpr int side = 16;
    option.rect = QRect(0, 0, side, side);
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        header.style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &option, &painter, &header);
    }
    int top = -1;
    int bottom = -1;
    std::vector<int> widths(side, 0);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            if (image.pixelColor(x, y).alpha() > 100) {
                ++widths[static_cast<size_t>(y)];
            }
        }
        if (widths[static_cast<size_t>(y)] > 0) {
            top = top < 0 ? y : top;
            bottom = y;
        }
    }
    if (top < 0 || top == bottom) {
        return Pointing::nowhere;
    }
    return widths[static_cast<size_t>(top)] > widths[static_cast<size_t>(bottom)] ? Pointing::down
                                                                                  : Pointing::up;
}

TEST_F(FileListTest, AHeaderClickSortsNumbersAndDatesLargestFirstAndTheArrowFollows) {
    const auto root = node(nullptr, "/r", true);
    for (const auto& [name, size, modified] :
         {std::tuple{"b", 300, 10.0}, std::tuple{"c", 100, 30.0}, std::tuple{"a", 200, 20.0}}) {
        const auto made = node(root, name);
        made->size = size;
        made->modified = modified;
        made->accessed = modified;
    }
    auto state = makeState();
    FilesTable table(*state, FilesTable::fileListColumns(true));
    table.resize(900, 300);
    table.setNodes(root->children);
    table.show();
    auto& header = dynamic_cast<SortHeader&>(*table.horizontalHeader());
    const auto click = [&](NodeColumn column) {
        const int section = table.nodeModel()->columnOf(column);
        QTest::mouseClick(
            header.viewport(), Qt::LeftButton, {},
            QPoint(header.sectionViewportPosition(section) + header.sectionSize(section) / 2,
                   header.height() / 2));
        return names(table.nodeModel()->nodes());
    };
    const auto arrow = [&](NodeColumn column) {
        return arrowPointing(header, header.sectionOption(table.nodeModel()->columnOf(column)));
    };
    EXPECT_EQ(names(table.nodeModel()->nodes()), (std::vector<std::string>{"b", "a", "c"}));
    EXPECT_EQ(arrow(NodeColumn::size), Pointing::down) << "largest first runs down";

    const struct {
        NodeColumn column;
        std::vector<std::string> order;
        Pointing pointing;
    } clicks[] = {
        {NodeColumn::name, {"a", "b", "c"}, Pointing::up},         // A to Z first
        {NodeColumn::size, {"b", "a", "c"}, Pointing::down},       // largest first
        {NodeColumn::size, {"c", "a", "b"}, Pointing::up},         // then smallest first
        {NodeColumn::modified, {"c", "a", "b"}, Pointing::down},   // newest first
        {NodeColumn::lastOpened, {"c", "a", "b"}, Pointing::down}, // newest first
        {NodeColumn::lastOpened, {"b", "a", "c"}, Pointing::up},
        {NodeColumn::size, {"b", "a", "c"}, Pointing::down},
    };
    for (const auto& [column, order, pointing] : clicks) {
        EXPECT_EQ(click(column), order) << static_cast<int>(column);
        EXPECT_EQ(arrow(column), pointing) << static_cast<int>(column);
    }
}

TEST_F(FileListTest, LongNamesSortPastTheirFirstSixteenBytes) {
    const auto root = node(nullptr, "/r", true);
    for (const char* name : {"screen recording b.mov", "Screen Recording a.mov",
                             "Screen Recording a.mov.part", "Screen Recording", "SCREEN"}) {
        node(root, name);
    }
    std::vector<FileNodePtr> rows = root->children;
    sortNodes(rows, NodeColumn::name, true);
    EXPECT_EQ(names(rows),
              (std::vector<std::string>{"SCREEN", "Screen Recording", "Screen Recording a.mov",
                                        "Screen Recording a.mov.part", "screen recording b.mov"}));
    sortNodes(rows, NodeColumn::name, false);
    EXPECT_EQ(names(rows).front(), "screen recording b.mov");
    EXPECT_EQ(names(rows).back(), "SCREEN");
}

TEST_F(FileListTest, TheCategoryMenuHasRoomForEveryTitle) {
    // Its open list is as wide as the menu, and a title cut in the middle
    // ("Caches & Te…orary Files") reads as nonsense.
    FilterBar bar;
    QComboBox* menu = bar.categoryMenu();
    for (int row = 0; row < menu->count(); ++row) {
        EXPECT_GE(menu->minimumContentsLength(), menu->itemText(row).size())
            << menu->itemText(row).toStdString();
    }
}

TEST_F(FileListTest, FilterBarEditsTheFilterAndShowsOneSetElsewhere) {
    FilterBar bar;
    std::vector<FileFilter> changes;
    bar.onChange = [&](const FileFilter& filter) { changes.push_back(filter); };

    // The menus' thresholds are binary, and "any" clears what it stands for.
    bar.sizeMenu()->setCurrentIndex(4);
    emit bar.sizeMenu()->activated(4);
    EXPECT_EQ(bar.sizeMenu()->currentText(), "> 500 MB");
    bar.dateMenu()->setCurrentIndex(1);
    emit bar.dateMenu()->activated(1);
    const int video = bar.categoryMenu()->findText("Video");
    ASSERT_GT(video, 0);
    EXPECT_EQ(bar.categoryMenu()->itemText(0), "All categories");
    emit bar.categoryMenu()->activated(video);
    bar.searchField()->setText("clip");
    ASSERT_EQ(changes.size(), 4u);
    EXPECT_EQ(changes.back().minSize, 524'288'000);
    EXPECT_EQ(changes.back().modifiedOlderThanDays, 30);
    EXPECT_EQ(changes.back().bucket, StorageBucket::video);
    EXPECT_EQ(changes.back().query, "clip");
    emit bar.categoryMenu()->activated(0);
    emit bar.dateMenu()->activated(0);
    EXPECT_FALSE(changes.back().bucket.has_value());
    EXPECT_FALSE(changes.back().modifiedOlderThanDays.has_value());

    // A filter set by another page: shown as it is, without an echo.
    FileFilter elsewhere;
    elsewhere.minSize = 500'000'000;
    elsewhere.modifiedOlderThanDays = 180;
    elsewhere.pathPrefix = "/home/ann/";
    const size_t heard = changes.size();
    bar.setFilter(elsewhere);
    EXPECT_EQ(changes.size(), heard);
    EXPECT_EQ(bar.sizeMenu()->currentText(), "> 500 MB");
    EXPECT_EQ(bar.sizeMenu()->currentData().toLongLong(), 500'000'000);
    EXPECT_EQ(bar.dateMenu()->currentText(), "> 6 months");
    EXPECT_EQ(bar.searchField()->text(), "");
    EXPECT_FALSE(bar.folderChip()->isHidden());
    bar.clearFolderButton()->click();
    EXPECT_FALSE(changes.back().pathPrefix.has_value());
    EXPECT_EQ(changes.back().minSize, 500'000'000);
    EXPECT_TRUE(bar.folderChip()->isHidden());

    // One extra item at most, gone once a value of the menu's own is back.
    elsewhere.minSize = 400'000'000;
    bar.setFilter(elsewhere);
    EXPECT_EQ(bar.sizeMenu()->count(), 8);
    EXPECT_EQ(bar.sizeMenu()->currentText(), "> 400 MB");
    elsewhere.minSize = 0;
    bar.setFilter(elsewhere);
    EXPECT_EQ(bar.sizeMenu()->count(), 7);
    EXPECT_EQ(bar.sizeMenu()->currentText(), "Any size");
}

class ScannedFilesTest : public test::UiTest {
protected:
    void SetUp() override {
        test::UiTest::SetUp();
        test::writeFile(dir / "disk/Movies/trip.mov", 900'000);
        test::writeFile(dir / "disk/Movies/clip.mp4", 600'000);
        test::writeFile(dir / "disk/Movies/tiny.mp4", 20'000);
        test::writeFile(dir / "disk/Docs/thesis.pdf", 700'000);
        test::writeFile(dir / "disk/Docs/note.txt", 3'000);
        state = makeState();
        scanFolder(*state, dir / "disk");
    }

    std::unique_ptr<AppState> state;
};

TEST_F(ScannedFilesTest, LargeFilesFollowTheStatesFilterAndRemovals) {
    LargeFilesView page(*state);
    EXPECT_FALSE(page.showsScanPrompt());
    EXPECT_EQ(names(page.list()->table()->nodeModel()->nodes()),
              (std::vector<std::string>{"trip.mov", "thesis.pdf", "clip.mp4"}));

    FileFilter videos;
    videos.kinds = {FileKind::video};
    state->setLargeFilter(videos);
    EXPECT_EQ(names(page.list()->table()->nodeModel()->nodes()),
              (std::vector<std::string>{"trip.mov", "clip.mp4"}));
    EXPECT_EQ(page.list()->filterBar()->filter(), videos);

    // The bar writes to the state, and the list follows.
    page.list()->filterBar()->searchField()->setText("CLIP");
    EXPECT_EQ(state->largeFilter().query, "CLIP");
    EXPECT_EQ(names(page.list()->table()->nodeModel()->nodes()),
              (std::vector<std::string>{"clip.mp4"}));

    state->setLargeFilter({});
    state->markRemoved({dir / "disk/Movies/trip.mov"});
    EXPECT_EQ(names(page.list()->table()->nodeModel()->nodes()),
              (std::vector<std::string>{"thesis.pdf", "clip.mp4"}));
}

TEST_F(FileListTest, FilesOfOneNameShowTheirFolders) {
    test::writeFile(dir / "disk/app1/dist/bundle1.js", 600'000);
    test::writeFile(dir / "disk/app2/dist/bundle1.js", 700'000);
    auto state = makeState();
    scanFolder(*state, dir / "disk");
    LargeFilesView page(*state);
    page.resize(1000, 600);
    page.show();
    FilesTable& table = *page.list()->table();
    const NodeTableModel& model = *table.nodeModel();
    ASSERT_EQ(model.rowCount(), 2);
    const int name = model.columnOf(NodeColumn::name);
    QStringList folders;
    QStringList tips;
    for (int row = 0; row < 2; ++row) {
        EXPECT_EQ(model.index(row, name).data().toString(), "bundle1.js");
        folders << model.index(row, name).data(NodeTableModel::folderRole).toString();
        tips << model.index(row, name).data(Qt::ToolTipRole).toString();
    }
    const QString disk = QString::fromStdString(dir / "disk");
    EXPECT_EQ(folders, (QStringList{disk + "/app2/dist", disk + "/app1/dist"}));
    EXPECT_EQ(tips, (QStringList{disk + "/app2/dist/bundle1.js", disk + "/app1/dist/bundle1.js"}));

    // The folder is drawn on a second line of the name cell, in a row tall enough for both.
    EXPECT_NE(dynamic_cast<FolderLineDelegate*>(table.itemDelegateForColumn(name)), nullptr);
    EXPECT_GE(table.rowHeight(0), 2 * table.fontMetrics().height());
    QImage withFolders = table.viewport()->grab().toImage();
    table.setItemDelegateForColumn(name, nullptr);
    QImage withoutFolders = table.viewport()->grab().toImage();
    EXPECT_NE(withFolders, withoutFolders);
}

TEST_F(FileListTest, ANameWithANewlineKeepsItsRowOnOneLine) {
    test::writeFile(dir / "disk/odd\nfolder/two\nlines.bin", 600'000);
    auto state = makeState();
    scanFolder(*state, dir / "disk");
    LargeFilesView page(*state);
    const NodeTableModel& model = *page.list()->table()->nodeModel();
    ASSERT_EQ(model.rowCount(), 1);
    const QModelIndex name = model.index(0, model.columnOf(NodeColumn::name));
    const QString disk = QString::fromStdString(dir / "disk");
    EXPECT_EQ(name.data().toString(), "two?lines.bin");
    EXPECT_EQ(name.data(NodeTableModel::folderRole).toString(), disk + "/odd?folder");
    EXPECT_EQ(name.data(Qt::ToolTipRole).toString(), disk + "/odd?folder/two?lines.bin");
}

TEST_F(ScannedFilesTest, TheNodeMenuOffersWhatTheNodesAllow) {
    const ScanResult& scan = *state->scan();
    const FileNodePtr movies = scan.root->children.at(0)->name == "Movies"
                                   ? scan.root->children.at(0)
                                   : scan.root->children.at(1);
    const FileNodePtr trip = names(movies->children).at(0) == "trip.mov" ? movies->children.at(0)
                                                                         : movies->children.at(1);
    const auto preview = [](const FileNodePtr&) {};

    QMenu* fileMenu = makeNodeContextMenu(*state, {trip}, preview, nullptr);
    EXPECT_EQ(actionTexts(*fileMenu),
              (QStringList{"Quick Look", "Show in Finder", "Open", "Copy Path",
                           "Exclude from Scans", "Delete trip.mov"}));
    QMenu* noPreview = makeNodeContextMenu(*state, {trip}, {}, nullptr);
    EXPECT_FALSE(actionTexts(*noPreview).contains("Quick Look"));
    QMenu* folderMenu = makeNodeContextMenu(*state, {movies}, preview, nullptr);
    EXPECT_EQ(actionTexts(*folderMenu),
              (QStringList{"Show in Finder", "Open", "Open in Explorer", "Copy Path",
                           "Exclude from Scans", "Delete Movies"}));
    QMenu* both = makeNodeContextMenu(*state, {trip, movies}, preview, nullptr);
    EXPECT_EQ(actionTexts(*both).back(), "Delete Items");

    actionNamed(*both, "Copy Path")->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
              trip->path() + "\n" + movies->path());
    actionNamed(*folderMenu, "Exclude from Scans")->trigger();
    EXPECT_EQ(state->settings().excludedPaths(), std::vector<std::string>{movies->path()});
    actionNamed(*folderMenu, "Open in Explorer")->trigger();
    EXPECT_EQ(state->section(), AppSection::explorer);
    EXPECT_EQ(state->explorerStack().back(), movies);

    // Children of a folder in the same plan are left out; everything goes to the Trash.
    actionNamed(*both, "Delete Items")->trigger();
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->title, "Delete Items");
    ASSERT_EQ(state->removal().plan()->items.size(), 1u);
    EXPECT_EQ(state->removal().plan()->items[0].path, movies->path());
    EXPECT_EQ(state->removal().plan()->items[0].removal, Removal::trash);
    for (QMenu* menu : {fileMenu, noPreview, folderMenu, both}) {
        delete menu;
    }
}

TEST_F(ScannedFilesTest, TypesShowTilesOfKindsMetAndTheFilesOfTheOnePicked) {
    TypesView page(*state);
    page.show();
    std::set<FileKind> tiled;
    for (const KindTile* tile : page.tiles()) {
        tiled.insert(tile->kind());
    }
    EXPECT_EQ(tiled, (std::set<FileKind>{FileKind::video, FileKind::document}));
    EXPECT_FALSE(page.list()->isVisible());

    page.pickKind(FileKind::video);
    EXPECT_TRUE(page.list()->isVisible());
    EXPECT_EQ(names(page.list()->table()->nodeModel()->nodes()),
              (std::vector<std::string>{"trip.mov", "clip.mp4"}));
    EXPECT_EQ(page.list()->footnote()->text(), "Only files over 512 KB are listed. The remaining 1 "
                                               "smaller files still count toward the totals.");
    EXPECT_EQ(page.list()->table()->nodeModel()->columnOf(NodeColumn::kind), -1);
}

TEST_F(ScannedFilesTest, TilesAgreeWithTheirListsThroughARemovalAndItsUndoAndCountInWords) {
    TypesView types(*state);
    LargeFilesView large(*state);
    types.show();
    types.pickKind(FileKind::video);
    const auto videoTile = [&]() -> const KindTile& {
        for (const KindTile* tile : types.tiles()) {
            if (tile->kind() == FileKind::video) {
                return *tile;
            }
        }
        throw std::runtime_error("no video tile");
    };
    const auto listed = [&] { return names(types.list()->table()->nodeModel()->nodes()); };
    EXPECT_EQ(videoTile().countText(), "3 files"); // the small clip counts, unlisted
    EXPECT_EQ(listed(), (std::vector<std::string>{"trip.mov", "clip.mp4"}));

    const std::string trip = dir / "disk/Movies/trip.mov";
    const std::string clip = dir / "disk/Movies/clip.mp4";
    state->markRemoved({trip, clip});
    EXPECT_EQ(videoTile().countText(), "1 file");
    EXPECT_TRUE(listed().empty());
    EXPECT_TRUE(large.list()->footnote()->text().startsWith("1 file · "))
        << large.list()->footnote()->text().toStdString();
    EXPECT_EQ(types.list()->table()->emptyText(), "No files match these filters.");

    EXPECT_EQ(state->markRestored({trip}), 0u);
    EXPECT_EQ(videoTile().countText(), "2 files");
    EXPECT_EQ(listed(), (std::vector<std::string>{"trip.mov"}));
    EXPECT_TRUE(types.list()->table()->emptyText().isEmpty());
    EXPECT_EQ(names(large.list()->table()->nodeModel()->nodes()),
              (std::vector<std::string>{"trip.mov", "thesis.pdf"}));

    // A filter that leaves nothing says so.
    FileFilter nothing;
    nothing.query = "no such name";
    state->setLargeFilter(nothing);
    EXPECT_EQ(large.list()->table()->nodeModel()->rowCount(), 0);
    EXPECT_EQ(large.list()->table()->emptyText(), "No files match these filters.");
    EXPECT_TRUE(large.list()->footnote()->text().startsWith("0 files"));
}

TEST_F(FileListTest, SpacePreviewsPicturesTextsAndTheRestWithoutTouchingThem) {
    // A camera's picture, far larger than the window.
    QImage picture(1600, 1200, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(QString::fromStdString(dir / "photo.jpg"), "JPEG"));
    test::writeText(dir / "notes.md", "# Plans\nnothing yet\n");
    test::writeText(dir / "blob & co.bin", std::string("\x7f"
                                                       "ELF\0\0\x01",
                                                       7));
    const auto root = node(nullptr, dir.path(), true);
    const auto photo = node(root, "photo.jpg", false, FileKind::image);
    const auto notes = node(root, "notes.md", false, FileKind::document);
    const auto blob = node(root, "blob & co.bin");
    // Opened ten days ago: any read on this file system would move that to now.
    const double tenDaysAgo = static_cast<double>(std::time(nullptr)) - 10 * 86400;
    for (const auto& file : {photo, notes, blob}) {
        test::setModificationTime(file->path(), tenDaysAgo);
    }

    auto state = makeState();
    FilesTable table(*state, FilesTable::fileListColumns(true));
    table.setNodes({photo, notes, blob});
    table.show();
    const struct {
        FileNodePtr node;
        PreviewWindow::Showing showing;
    } cases[] = {
        {photo, PreviewWindow::Showing::picture},
        {notes, PreviewWindow::Showing::text},
        {blob, PreviewWindow::Showing::facts},
    };
    for (const auto& [shown, showing] : cases) {
        table.setCurrentIndex(table.model()->index(table.nodeModel()->rowOf(shown), 0));
        QTest::keyClick(&table, Qt::Key_Space);
        ASSERT_NE(table.previewWindow(), nullptr);
        PreviewWindow& preview = *table.previewWindow();
        settle();
        EXPECT_TRUE(preview.isVisible()) << shown->name;
        EXPECT_EQ(preview.node(), shown);
        EXPECT_EQ(preview.showing(), showing) << shown->name;
        if (showing == PreviewWindow::Showing::picture) {
            // Drawn large, in its own proportions.
            const QRect drawn = preview.pictureView()->shownRect();
            EXPECT_GE(drawn.width(), 400) << drawn.width() << "x" << drawn.height();
            EXPECT_NEAR(drawn.width() * 3, drawn.height() * 4, 8);
        }
        if (showing == PreviewWindow::Showing::facts) {
            // The facts read as text, with no markup in sight.
            QLabel& facts = *preview.factsLabel();
            EXPECT_EQ(facts.textFormat(), Qt::RichText);
            QTextDocument shownText;
            shownText.setHtml(facts.text());
            EXPECT_TRUE(shownText.toPlainText().startsWith("blob & co.bin"))
                << shownText.toPlainText().toStdString();
            EXPECT_FALSE(shownText.toPlainText().contains('<'));
        }
        EXPECT_DOUBLE_EQ(test::accessTime(shown->path()), tenDaysAgo) << shown->name;
        QTest::keyClick(&table, Qt::Key_Space);
        EXPECT_FALSE(preview.isVisible()) << shown->name;
    }
}

TEST_F(FileListTest, TabLeavesTheTableAndArrowsMoveWithinIt) {
    const auto root = node(nullptr, "/r", true);
    for (const char* name : {"a", "b", "c"}) {
        node(root, name)->size = 1'000'000;
    }
    auto state = makeState();
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* table = new FilesTable(*state, FilesTable::fileListColumns(true));
    auto* after = new QLineEdit;
    layout->addWidget(table);
    layout->addWidget(after);
    table->setNodes(root->children);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    table->setFocus();
    table->selectRow(0);
    const std::vector<FileNodePtr> chosen = table->selectedNodes();
    ASSERT_EQ(chosen.size(), 1u);

    // The arrows walk the rows.
    QTest::keyClick(table, Qt::Key_Down);
    EXPECT_EQ(table->selectedNodes(), std::vector<FileNodePtr>{table->nodeModel()->node(1)});
    QTest::keyClick(table, Qt::Key_Up);
    EXPECT_EQ(table->selectedNodes(), chosen);

    // Tab goes on to the next control and leaves the selection as it was.
    QTest::keyClick(table, Qt::Key_Tab);
    EXPECT_TRUE(after->hasFocus());
    EXPECT_EQ(table->selectedNodes(), chosen);
}

} // namespace
} // namespace dorvik
