// The Login Items and iCloud Drive pages as a user meets them: sections, badges and the actions
// each row offers; the three figures, the folders with their check boxes, the cap on rows and the
// confirmation before downloads are given back.

#include "UiTest.h"
#include "base/Wording.h"
#include "support/Bundles.h"
#include "ui/QtText.h"
#include "ui/pages/cloud/CloudFolderRow.h"
#include "ui/pages/cloud/CloudView.h"
#include "ui/pages/loginitems/LoginItemRow.h"
#include "ui/pages/loginitems/LoginItemsView.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/SelectionBar.h"
#include "ui/widgets/StatTile.h"
#include "ui/widgets/TagLabel.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

namespace dorvik {
namespace {

using test::showsText;
using test::waitUntil;

class LoginItemsViewTest : public test::UiTest {
protected:
    LaunchPlaces places() {
        LaunchPlaces result;
        result.home = dir / "home";
        result.configHome = dir / "home/.config";
        result.dataHome = dir / "home/.local/share";
        result.systemRoot = dir / "root";
        return result;
    }
};

LoginItemRow* rowNamed(const LoginItemsView& view, const std::string& label) {
    for (LoginItemRow* row : view.rows()) {
        if (row->item().label == label) {
            return row;
        }
    }
    return nullptr;
}

TEST_F(LoginItemsViewTest, SectionsBadgesAndActionsFollowTheItems) {
    const LaunchPlaces where = places();
    test::writePropertyList(where.folder(LaunchScope::userAgent) + "/com.apple.thing.plist",
                            "<dict><key>Label</key><string>com.apple.thing</string></dict>");
    test::writePropertyList(
        where.folder(LaunchScope::systemDaemon) + "/org.gone.plist",
        "<dict><key>Label</key><string>org.gone</string><key>Program</key><string>/opt/"
        "dorvik-test-gone/d</string><key>RunAtLoad</key><true/><key>KeepAlive</key><dict/></dict>",
        test::PlistFormat::binary);
    test::writeText(where.folder(LaunchScope::autostartUser) + "/mine.desktop",
                    "[Desktop Entry]\nType=Application\nName=Mine\nExec=/bin/sh\n");
    auto state = makeState();
    state->loginItems().setSources({where, platform::runProcess, {}});
    LoginItemsView view(*state);
    view.resize(1000, 800);
    view.show();
    EXPECT_TRUE(view.loading()->isVisibleTo(&view));
    EXPECT_TRUE(showsText(&view, "Reading launch agents…"));
    ASSERT_TRUE(waitUntil([&] { return !state->loginItems().isLoading(); }));
    test::settle();
    EXPECT_FALSE(view.loading()->isVisibleTo(&view));

    // Sections in the order of the scopes; the empty ones are not there.
    QStringList titles;
    for (QLabel* title : view.sectionTitles()) {
        titles << title->text();
    }
    EXPECT_EQ(titles,
              (QStringList{"Your login agents", "System daemons", "Your autostart entries"}));

    LoginItemRow* apple = rowNamed(view, "com.apple.thing");
    ASSERT_NE(apple, nullptr);
    EXPECT_EQ(apple->removeButton(), nullptr);
    EXPECT_EQ(apple->revealButton()->text(), shownText("Show in Finder"));

    LoginItemRow* gone = rowNamed(view, "org.gone");
    ASSERT_NE(gone, nullptr);
    EXPECT_EQ(gone->badges(), (QStringList{"App removed", "At login", "Always running"}));
    ASSERT_NE(gone->removeButton(), nullptr);
    EXPECT_EQ(gone->removeButton()->text(), "Remove…");

    LoginItemRow* mine = rowNamed(view, "mine");
    ASSERT_NE(mine, nullptr);
    EXPECT_EQ(mine->badges(), (QStringList{"At login"}));
    EXPECT_EQ(mine->nameLabel()->text(), "Mine");
    ASSERT_NE(mine->removeButton(), nullptr);
    EXPECT_EQ(mine->removeButton()->text(), "Remove");

    // The removal is read back: the row goes, the toast offers undo.
    mine->removeButton()->click();
    ASSERT_TRUE(waitUntil(
        [&] { return !state->loginItems().isRemoving() && !state->loginItems().isLoading(); }));
    test::settle();
    EXPECT_EQ(rowNamed(view, "mine"), nullptr);
    EXPECT_FALSE(view.message()->isVisibleTo(&view));
    ASSERT_TRUE(state->removal().toast().has_value());
    EXPECT_EQ(state->removal().toast()->undoable.size(), 1u);
}

class CloudViewTest : public test::UiTest {
protected:
    // One folder with `count` downloads, the second of which iCloud does not have whole yet.
    static CloudReport reportWith(size_t count) {
        CloudReport report;
        report.isAvailable = true;
        CloudFolder folder;
        folder.path = "/cloud/Films";
        folder.title = "Films";
        for (size_t index = 0; index < count; ++index) {
            folder.items.push_back({"/cloud/Films/" + std::to_string(index) + ".mov",
                                    std::to_string(index) + ".mov", 2'000'000, index != 1});
            folder.localSize += 2'000'000;
        }
        folder.cloudOnlySize = 7'000'000;
        CloudFolder onlyCloud;
        onlyCloud.path = "/cloud/Reader";
        onlyCloud.title = "Reader";
        onlyCloud.isApp = true;
        onlyCloud.cloudOnlySize = 1'000'000;
        onlyCloud.cloudOnlyCount = 1;
        report.folders = {folder, onlyCloud};
        return report;
    }

    void useReport(AppState& state, std::function<CloudReport()> build) {
        CloudSources sources;
        sources.build = std::move(build);
        sources.evict = [this](const std::string& path) {
            evicted.push_back(path);
            return std::optional<std::string>();
        };
        state.cloud().setSources(sources);
    }

    std::vector<std::string> evicted;
};

TEST_F(CloudViewTest, OnLinuxThePageSaysICloudIsNotInUse) {
    auto state = makeState();
    CloudView view(*state);
    view.resize(1000, 800);
    view.show();
    // Dorvik reads the real home of the test run, which has no iCloud Drive.
    ASSERT_TRUE(waitUntil([&] { return state->cloud().report().has_value(); }));
    test::settle();
    EXPECT_EQ(view.shownPane(), view.unavailablePane());
    EXPECT_TRUE(showsText(&view, shownText("iCloud Drive isn\u2019t in use on this Mac")));
    EXPECT_TRUE(showsText(&view, shownText("Turn it on in System Settings \u203a Apple Account "
                                           "\u203a iCloud to see it here.")));
}

TEST_F(CloudViewTest, FiguresFoldersAndTheCheckBoxesWorkOnWhatIsUploaded) {
    auto state = makeState();
    useReport(*state, [] { return reportWith(3); });
    CloudView view(*state);
    view.resize(1000, 800);
    view.show();
    EXPECT_EQ(view.shownPane(), view.readingPane());
    ASSERT_TRUE(waitUntil([&] { return !state->cloud().isLoading(); }));
    test::settle();
    EXPECT_EQ(view.shownPane(), view.reportPane());
    ASSERT_EQ(view.tiles().size(), 3u);
    EXPECT_EQ(view.tiles()[0]->value(), "6 MB");
    EXPECT_EQ(view.tiles()[1]->value(), "4 MB"); // the one still uploading can't be freed
    EXPECT_EQ(view.tiles()[2]->value(), "8 MB");
    // The folder with nothing downloaded counts in the figures only.
    ASSERT_EQ(view.folderRows().size(), 1u);
    CloudFolderRow* films = view.folderRows()[0];
    EXPECT_TRUE(showsText(films, "3 downloaded files · 7 MB more only in iCloud"));
    EXPECT_EQ(films->chevron()->accessibleName(), "Expand");

    films->chevron()->click();
    test::settle();
    films = view.folderRows()[0];
    EXPECT_EQ(films->chevron()->accessibleName(), "Collapse");
    ASSERT_EQ(films->itemChecks().size(), 3u);
    EXPECT_FALSE(films->itemChecks()[1]->isEnabled());
    // TagLabel has no meta-object of its own: the widgets are told apart by their C++ type.
    QStringList tags;
    for (QWidget* child : films->findChildren<QWidget*>()) {
        if (auto* tag = dynamic_cast<TagLabel*>(child)) {
            tags << tag->text();
        }
    }
    EXPECT_EQ(tags, QStringList{"Still uploading"});

    films->itemChecks()[0]->click();
    test::settle();
    films = view.folderRows()[0];
    EXPECT_EQ(films->folderCheck()->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(view.selected().size(), 1u);

    films->folderCheck()->click();
    test::settle();
    films = view.folderRows()[0];
    EXPECT_EQ(view.selected(), (std::set<std::string>{"/cloud/Films/0.mov", "/cloud/Films/2.mov"}));
    EXPECT_EQ(films->folderCheck()->checkState(), Qt::Checked);
    EXPECT_TRUE(view.selectionBar()->isVisibleTo(&view));

    view.selectionBar()->actionButton()->click();
    ASSERT_NE(view.confirmation(), nullptr);
    EXPECT_EQ(view.confirmation()->text(), "Remove the downloads of 2 files?");
    QAbstractButton* confirm = nullptr;
    for (QAbstractButton* button : view.confirmation()->buttons()) {
        if (button->text() == "Remove Downloads") {
            confirm = button;
        }
    }
    ASSERT_NE(confirm, nullptr);
    confirm->click();
    ASSERT_TRUE(waitUntil([&] { return !state->cloud().isLoading(); }));
    test::settle();
    EXPECT_EQ(evicted, (std::vector<std::string>{"/cloud/Films/0.mov", "/cloud/Films/2.mov"}));
    EXPECT_TRUE(view.selected().empty());
    EXPECT_EQ(state->removal().toast()->message, "4 MB freed");
}

TEST_F(CloudViewTest, AnOpenedFolderListsThreeHundredAndSelectionFollowsTheReport) {
    auto state = makeState();
    size_t count = 305;
    useReport(*state, [&count] { return reportWith(count); });
    CloudView view(*state);
    view.resize(1000, 800);
    view.show();
    ASSERT_TRUE(waitUntil([&] { return !state->cloud().isLoading(); }));
    test::settle();
    view.folderRows()[0]->chevron()->click();
    test::settle();
    EXPECT_EQ(view.folderRows()[0]->itemChecks().size(), 300u);
    EXPECT_TRUE(showsText(view.folderRows()[0], "… and 5 more"));

    view.folderRows()[0]->itemChecks()[0]->click();
    view.folderRows()[0]->itemChecks()[2]->click();
    test::settle();
    ASSERT_EQ(view.selected().size(), 2u);
    // After a refresh only the first two downloads are left: the selected third one goes.
    count = 2;
    view.refreshButton()->click();
    EXPECT_FALSE(view.refreshButton()->isEnabled());
    ASSERT_TRUE(waitUntil([&] { return !state->cloud().isLoading(); }));
    test::settle();
    EXPECT_EQ(view.selected(), (std::set<std::string>{"/cloud/Films/0.mov"}));
}

} // namespace
} // namespace dorvik
