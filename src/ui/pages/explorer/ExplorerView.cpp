#include "ui/pages/explorer/ExplorerView.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/files/FilesTable.h"
#include "ui/files/NodeActions.h"
#include "ui/pages/explorer/Breadcrumbs.h"
#include "ui/pages/explorer/MapSidePanel.h"
#include "ui/pages/explorer/SunburstLayout.h"
#include "ui/pages/explorer/SunburstView.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SelectionBar.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int mapDepth = 5;

ExplorerMode storedMode(const SettingsState& settings) {
    return settings.explorerMode() == QLatin1String("map") ? ExplorerMode::map : ExplorerMode::list;
}

void storeMode(SettingsState& settings, ExplorerMode mode) {
    settings.setExplorerMode(mode == ExplorerMode::map ? QStringLiteral("map")
                                                       : QStringLiteral("list"));
}

} // namespace

ExplorerView::ExplorerView(AppState& state, QWidget* parent)
    : ScanPage(state, tr("Folder explorer"),
               tr("Browse folder by folder sorted by size, like a Finder that shows what "
                  "everything really takes up."),
               tr("Nothing to explore yet"),
               tr("Scan your disk to browse it folder by folder, by size."), parent),
      mode_(storedMode(state.settings())), modePicker_(new SegmentedControl),
      breadcrumbs_(new Breadcrumbs(state)), modes_(new QStackedWidget) {
    modePicker_->addSegment(static_cast<int>(ExplorerMode::list), tr("List"), "list.bullet");
    modePicker_->addSegment(static_cast<int>(ExplorerMode::map), tr("Map"), "chart.pie");
    modePicker_->setChosen(static_cast<int>(mode_));
    modePicker_->onChosen = [this](int id) { setMode(static_cast<ExplorerMode>(id)); };
    header()->addTrailing(modePicker_);

    modes_->addWidget(makeList());
    modes_->addWidget(makeMap());
    modes_->setCurrentIndex(static_cast<int>(mode_));

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(breadcrumbs_);
    layout->addWidget(modes_, 1);
    setContent(content);

    connect(&state, &AppState::explorerStackChanged, this, &ExplorerView::refresh);
    connect(&state, &AppState::scanChanged, this, &ExplorerView::refresh);
    refresh();
}

void ExplorerView::setMode(ExplorerMode mode) {
    if (mode == mode_) {
        return;
    }
    mode_ = mode;
    storeMode(state_.settings(), mode);
    modePicker_->setChosen(static_cast<int>(mode));
    modes_->setCurrentIndex(static_cast<int>(mode));
}

FileNodePtr ExplorerView::current() const {
    const std::vector<FileNodePtr>& stack = state_.explorerStack();
    for (auto node = stack.rbegin(); node != stack.rend(); ++node) {
        if (!(*node)->deleted) {
            return *node;
        }
    }
    return state_.scan() ? state_.scan()->root : nullptr;
}

void ExplorerView::open(const FileNodePtr& folder) {
    if (folder == nullptr || !folder->isDirectory) {
        return;
    }
    std::vector<FileNodePtr> stack = state_.explorerStack();
    stack.push_back(folder);
    state_.setExplorerStack(std::move(stack));
}

void ExplorerView::up() {
    std::vector<FileNodePtr> stack = state_.explorerStack();
    if (stack.size() > 1) {
        stack.pop_back();
        state_.setExplorerStack(std::move(stack));
    }
}

QWidget* ExplorerView::makeList() {
    auto* list = new QWidget;
    table_ = new FilesTable(state_, {NodeColumn::name, NodeColumn::size, NodeColumn::files,
                                     NodeColumn::category, NodeColumn::modified});
    table_->onActivated = [this](const FileNodePtr& node) { open(node); };
    selectionBar_ = table_->makeSelectionBar();

    unreadable_ = new QWidget;
    auto* unreadableLayout = new QHBoxLayout(unreadable_);
    unreadableLayout->setContentsMargins(0, 0, 0, 0);
    unreadableLayout->setSpacing(Style::gap);
    auto* lock = new SymbolView("lock.fill", Style::smallIcon);
    lock->setTint(Style::Tint::warning);
    unreadableLayout->addWidget(lock);
    unreadableLayout->addWidget(Style::label(tr("No permission to read. Grant Full Disk Access."),
                                             Style::TextRole::secondary));
    unreadableLayout->addStretch();

    smallFiles_ = Style::label({}, Style::TextRole::caption);

    auto* layout = new QVBoxLayout(list);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(unreadable_);
    layout->addWidget(table_, 1);
    layout->addWidget(smallFiles_);
    layout->addWidget(selectionBar_);
    return list;
}

QWidget* ExplorerView::makeMap() {
    auto* map = new QWidget;
    sunburst_ = new SunburstView;
    sunburst_->setMaxDepth(mapDepth);
    sunburst_->onOpen = [this](const FileNodePtr& node) { open(node); };
    sunburst_->onUp = [this] { up(); };
    sunburst_->onSelect = [this](const FileNodePtr& node) { sidePanel_->setFocusNode(node); };
    sidePanel_ = new MapSidePanel;
    sidePanel_->onReveal = [this](const FileNodePtr& node) { revealPaths(state_, {node->path()}); };

    auto* hint = Style::label(tr("Hover to inspect, click a ring to open a folder, click the "
                                 "centre to go up."),
                              Style::TextRole::caption);
    auto* column = new QVBoxLayout;
    column->setSpacing(Style::gap);
    column->addWidget(sunburst_, 1);
    column->addWidget(hint, 0, Qt::AlignHCenter);
    auto* layout = new QHBoxLayout(map);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::sectionGap);
    layout->addLayout(column, 1);
    layout->addWidget(sidePanel_);
    return map;
}

void ExplorerView::refresh() {
    const FileNodePtr folder = current();
    if (folder != nullptr && !state_.explorerStack().empty() &&
        state_.explorerStack().back() != folder) {
        // The open folder went in a removal: stand in the nearest folder still there.
        std::vector<FileNodePtr> stack = state_.explorerStack();
        while (!stack.empty() && stack.back() != folder) {
            stack.pop_back();
        }
        state_.setExplorerStack(stack.empty() ? std::vector<FileNodePtr>{folder}
                                              : std::move(stack));
        return;
    }
    if (folder == nullptr) {
        table_->setNodes({});
        sunburst_->setRoot(nullptr);
        sidePanel_->setCurrent(nullptr);
        shownRoot_ = nullptr;
        return;
    }
    table_->setNodes(Sunburst::largestChildren(*folder));
    unreadable_->setVisible(folder->unreadable);
    smallFiles_->setVisible(folder->smallFilesCount > 0);
    smallFiles_->setText(tr("Also: %1 small files directly in this folder · %2")
                             .arg(qtText(TextForms::count(folder->smallFilesCount)),
                                  qtText(TextForms::size(folder->smallFilesSize))));
    if (folder != shownRoot_) {
        sidePanel_->setCurrent(folder);
        sidePanel_->setFocusNode(nullptr);
        shownRoot_ = folder;
        // The view may report the node under a still pointer at once, focusing the panel.
        sunburst_->setRoot(folder);
    } else {
        // Same folder, changed tree: removed nodes leave the rings and the panel.
        sunburst_->relayout();
        sidePanel_->refresh();
    }
}

} // namespace dorvik
