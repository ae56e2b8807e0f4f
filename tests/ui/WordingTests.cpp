// Every text the application can show on a Linux desktop, read through the application's
// translation (the Linux wording), names nothing of a Mac: the core's tables and sentences, and
// what each page, menu, sheet and toast puts on screen before and after a scan. The access sheet
// and banner are left out: they ask for a Mac's privacy permission and never show on Linux, where
// the program reads whatever the account may read.

#include "UiTest.h"
#include "base/PathNames.h"
#include "catalogue/JunkCatalogue.h"
#include "cleaning/DeveloperArtifacts.h"
#include "cleaning/VirtualDisks.h"
#include "platform/FileError.h"
#include "platform/HomeDirectory.h"
#include "removal/DeletionEngine.h"
#include "removal/DeletionHistory.h"
#include "removal/PlanTexts.h"
#include "removal/SafetyRules.h"
#include "removal/Toast.h"
#include "scanning/ScanTarget.h"
#include "support/Bundles.h"
#include "support/MacWords.h"
#include "system/VolumeInfo.h"
#include "trends/TrendTexts.h"
#include "ui/Appearance.h"
#include "ui/LinuxWording.h"
#include "ui/QtText.h"
#include "ui/files/NodeActions.h"
#include "ui/sheets/SettingsView.h"
#include "ui/shell/RootView.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>

#include <map>
#include <set>

namespace dorvik {
namespace {

// The Linux wording, installed for the life of the object, before any widget reads a text.
class InstalledWording {
public:
    InstalledWording() { QApplication::installTranslator(&wording_); }
    ~InstalledWording() { QApplication::removeTranslator(&wording_); }

private:
    LinuxWording wording_;
};

// What a user could read, gathered with where it was seen.
class ShownTexts {
public:
    void add(const QString& text, const std::string& where) {
        if (!text.trimmed().isEmpty()) {
            texts_.emplace(text.toStdString(), where);
        }
    }

    void addActions(const QList<QAction*>& actions, const std::string& where) {
        for (const QAction* action : actions) {
            add(action->text(), where);
            add(action->toolTip(), where);
            if (action->menu() != nullptr) {
                addActions(action->menu()->actions(), where);
            }
        }
    }

    // Every widget under `root` that a user could see now: its texts, its tool tips, the items
    // of its lists and tables, and its actions.
    void addVisible(const QWidget* root, const std::string& where) {
        QList<const QWidget*> widgets = {root};
        for (const QWidget* child : root->findChildren<QWidget*>()) {
            widgets.push_back(child);
        }
        for (const QWidget* widget : widgets) {
            if (!widget->isVisibleTo(root->window()) && widget != root) {
                continue;
            }
            add(widget->toolTip(), where);
            add(widget->windowTitle(), where);
            addActions(widget->actions(), where);
            if (const auto* label = qobject_cast<const QLabel*>(widget)) {
                add(label->text(), where);
            } else if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
                add(button->text(), where);
            } else if (const auto* line = qobject_cast<const QLineEdit*>(widget)) {
                add(line->placeholderText(), where);
            } else if (const auto* combo = qobject_cast<const QComboBox*>(widget)) {
                for (int i = 0; i < combo->count(); ++i) {
                    add(combo->itemText(i), where);
                }
            } else if (const auto* tabs = qobject_cast<const QTabBar*>(widget)) {
                for (int i = 0; i < tabs->count(); ++i) {
                    add(tabs->tabText(i), where);
                }
            } else if (const auto* view = qobject_cast<const QAbstractItemView*>(widget)) {
                addModel(view->model(), where);
            }
        }
    }

    // Texts the core hands to the pages, shown as the pages show them.
    void addKey(std::string_view key, const std::string& where) { add(shownText(key), where); }

    bool contains(const QString& text) const { return texts_.contains(text.toStdString()); }
    size_t size() const { return texts_.size(); }

    // Each text that names a Mac, with where it was seen.
    std::vector<std::string> macTexts() const {
        std::vector<std::string> found;
        for (const auto& [text, where] : texts_) {
            if (!test::macWordsIn(text).empty()) {
                found.push_back(where + ": " + text);
            }
        }
        return found;
    }

private:
    void addModel(const QAbstractItemModel* model, const std::string& where) {
        if (model == nullptr) {
            return;
        }
        for (int column = 0; column < model->columnCount(); ++column) {
            add(model->headerData(column, Qt::Horizontal).toString(), where);
        }
        constexpr int rowsRead = 50;
        for (int row = 0; row < std::min(model->rowCount(), rowsRead); ++row) {
            for (int column = 0; column < model->columnCount(); ++column) {
                const QModelIndex index = model->index(row, column);
                for (int role : {int(Qt::DisplayRole), int(Qt::ToolTipRole)}) {
                    add(model->data(index, role).toString(), where);
                }
                for (int role = Qt::UserRole; role < Qt::UserRole + 10; ++role) {
                    const QVariant value = model->data(index, role);
                    if (value.typeId() == QMetaType::QString) {
                        add(value.toString(), where);
                    }
                }
            }
        }
    }

    std::map<std::string, std::string> texts_; // each text with the first place it was seen
};

// The sentences of the safety rules, reached path by path as a page would ask for them.
std::vector<std::string> safetyReasons(const std::string& scratch) {
    const std::string home = platform::homeDirectory();
    const std::string dataHome = platform::dataHomeDirectory();
    std::vector<std::string> paths = {
        "/",
        "/Volumes",
        "/Volumes/Backup/x",
        "/Library/Application Support/Example/x",
        "/srv/www",
        "/mnt/usb",
        "/System/Volumes/Data/private/var/vm/sleepimage",
        home + "/Library/Caches",
        home + "/Library/Caches/com.example",
        home + "/Documents",
        home + "/Library/Example/x",
        home + "/Downloads/a.zip",
        home + "/Downloads/old.dmg",
        home + "/.Trash",
        home + "/.Trash/a",
        home + "/Pictures/Photos Library.photoslibrary",
        home + "/Applications/Tool.app/Contents/MacOS/tool",
        home + "/.ssh/id_ed25519",
        home + "/notes.txt",
        parentPath(home),
        dataHome + "/Trash",
        dataHome + "/Trash/files/a",
        scratch + "/Apple.app",
        scratch + "/NoIdentifier.app",
    };
    for (const auto& table :
         {SafetyRules::protectedSystemPaths(), SafetyRules::protectedLinuxSystemPaths()}) {
        for (const SafetyRules::ProtectedPath& row : table) {
            paths.push_back(std::string(row.path) + "/x");
        }
    }
    for (const SafetyRules::ProtectedPath& row : SafetyRules::protectedHomePaths()) {
        paths.push_back(home + "/" + std::string(row.path) + "/x");
    }
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        paths.push_back(ruleFolder(rule, home, dataHome));
    }
    std::vector<std::string> reasons;
    for (const std::string& path : paths) {
        reasons.push_back(SafetyRules::verdict(path).reason);
    }
    return reasons;
}

// The texts of the core that the pages show, each in the way they come to a page.
void addCoreTexts(ShownTexts& shown, const std::string& scratch) {
    for (AppSection section : allAppSections) {
        shown.addKey(info(section).title, "section");
    }
    for (StorageBucket bucket : allStorageBuckets) {
        shown.addKey(info(bucket).displayName, "category");
        shown.addKey(info(bucket).explanation, "category");
    }
    for (FileKind kind : allFileKinds) {
        shown.addKey(info(kind).displayName, "kind");
    }
    for (Risk risk : allRisks) {
        shown.addKey(info(risk).label, "risk");
    }
    for (JunkGroup group : allJunkGroups) {
        shown.addKey(info(group).title, "junk group");
    }
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        shown.addKey(rule.title, "junk rule");
        shown.addKey(rule.explanation, "junk rule");
        shown.addKey(outcomeLabel(rule.removal), "junk rule");
    }
    for (const ArtifactName& artifact : artifactNames()) {
        shown.addKey(artifact.detail, "developer artifact");
    }
    for (const DiskOwner& owner : diskOwners()) {
        shown.addKey(owner.owner, "virtual disk");
        shown.addKey(diskAdvice(owner.owner).advice, "virtual disk");
    }
    shown.addKey(diskAdvice(unknownDiskOwner).advice, "virtual disk");
    for (const std::string& reason : safetyReasons(scratch)) {
        shown.addKey(reason, "safety reason");
    }
    for (platform::FileErrorKind kind :
         {platform::FileErrorKind::noSuchFile, platform::FileErrorKind::noPermission,
          platform::FileErrorKind::inUse, platform::FileErrorKind::mountPoint}) {
        shown.addKey(DeletionEngine::failureReason(platform::FileError{kind, "x"}), "failure");
    }
    for (std::string_view title :
         {PlanTitles::deleteItems, PlanTitles::cleanJunk, PlanTitles::cleanDeveloperArtifacts,
          PlanTitles::deleteDuplicateCopies, PlanTitles::emptyTheTrash,
          PlanTitles::deleteInstallers, PlanTitles::deleteAppLeftovers}) {
        shown.addKey(title, "plan title");
    }
    for (bool permanent : {false, true}) {
        shown.addKey(PlanTexts::headline(permanent), "plan");
        shown.addKey(PlanTexts::confirmButton(permanent), "plan");
    }
    shown.addKey(PlanTexts::reviewConsent(2), "plan");
    shown.addKey(PlanTexts::protectedNote(3), "plan");
    DeletionReport report;
    report.freed = 1000;
    report.movedToTrash = 2000;
    report.deletedPaths = {"/a"};
    report.failures = {DeletionFailure{"1", "/b", "No longer exists."}};
    for (FailureDetails details : {FailureDetails::inHistory, FailureDetails::listedBelow}) {
        const Toast toast = deletionToast(report, {}, details);
        shown.addKey(toast.message, "toast");
        shown.addKey(toast.detail.value_or(""), "toast");
    }
    const Toast undone = undoToast(2);
    shown.addKey(undone.message, "toast");
    shown.addKey(undone.detail.value_or(""), "toast");
    for (bool restored : {false, true}) {
        for (std::optional<std::string> trashPath : {std::optional<std::string>(), {"/t"}}) {
            HistoryEntry entry{"1", 0, "/a", trashPath, 1, restored, std::nullopt};
            shown.addKey(historyMethod(entry), "history");
        }
    }
    shown.addKey(fallbackVolumeName, "disk");
    for (const ScanTarget& target : {ScanTarget::wholeDisk(), ScanTarget::home()}) {
        shown.addKey(target.title(), "scan target");
    }
    for (std::string_view text :
         {TrendTexts::learningTitle, TrendTexts::learningText, TrendTexts::changesTitle,
          TrendTexts::noHistoryText, TrendTexts::noFolderChangeText}) {
        shown.addKey(text, "trends");
    }
}

class WordingTest : public test::UiTest {
protected:
    InstalledWording wording;
    AppearanceController appearance{QApplication::palette()};
};

TEST_F(WordingTest, NothingShownNamesAMac) {
    test::writeInfoPlist(dir / "Apple.app", {{"CFBundleIdentifier", "com.apple.Example"}});
    test::writeInfoPlist(dir / "NoIdentifier.app", {});
    test::writeFile(dir / "tree/Documents/report.pdf", 700000);
    test::writeFile(dir / "tree/Videos/clip.mkv", 900000);
    test::writeFile(dir / "tree/gone.txt", 10);
    test::writeFile(dir / "tree/trashed.txt", 10);

    ShownTexts shown;
    addCoreTexts(shown, dir.path());

    auto state = makeState();
    RootView window(*state, appearance);
    window.resize(1120, 720);
    window.show();
    shown.addActions(window.menuBar()->actions(), "menu bar");
    const auto everyPage = [&](const std::string& moment) {
        for (AppSection section : allAppSections) {
            state->setSection(section);
            test::settle();
            shown.addVisible(&window, moment + " " + std::string(info(section).rawValue));
        }
    };
    everyPage("before a scan:");
    scanFolder(*state, dir / "tree");
    everyPage("after a scan:");

    // A row's menu, the plan sheet with a reason of each risk, a toast, and the failures that
    // History keeps.
    const auto node = state->scan()->root->children.front();
    QMenu* menu = makeNodeContextMenu(
        *state, {node}, [](const FileNodePtr&) {}, &window);
    shown.addActions(menu->actions(), "row menu");
    state->removal().propose(
        {makePlanItem(dir / "tree/trashed.txt", 10, Removal::trash),
         makePlanItem("/System/Library/Kernels", 10, Removal::trash),
         makePlanItem(platform::homeDirectory() + "/Downloads/a.zip", 10, Removal::trash)},
        std::string(PlanTitles::deleteItems));
    test::settle();
    shown.addVisible(&window, "plan sheet");
    state->removal().cancelPlan();
    state->removal().performDeletion(
        {makeDeletionRequest(dir / "tree/trashed.txt", 10, Removal::trash),
         makeDeletionRequest(dir / "tree/missing.txt", 10, Removal::trash)},
        false);
    ASSERT_TRUE(test::waitUntil([&] { return state->removal().toast().has_value(); }));
    state->setSection(AppSection::history);
    test::settle();
    shown.addVisible(&window, "after a removal: history");

    SettingsView settings(*state, appearance);
    settings.show();
    test::settle();
    shown.addVisible(&settings, "settings");

    // The walk reached the texts it is meant to read, and read them through the Linux wording.
    EXPECT_GT(shown.size(), 300u);
    EXPECT_TRUE(shown.contains(QStringLiteral("Show in File Manager")));
    EXPECT_TRUE(shown.contains(QStringLiteral("System libraries.")));
    EXPECT_EQ(shown.macTexts(), std::vector<std::string>{});
}

} // namespace
} // namespace dorvik
