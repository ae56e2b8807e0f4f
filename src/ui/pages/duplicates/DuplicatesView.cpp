#include "ui/pages/duplicates/DuplicatesView.h"

#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/FolderLineDelegate.h"
#include "ui/files/NodeActions.h"
#include "ui/files/NodeTableModel.h"
#include "ui/widgets/CentredColumn.h"
#include "ui/widgets/ListTable.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/SelectionBar.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace dorvik {

namespace {

enum Column { nameColumn, noteColumn, dateColumn };

// Where a file row keeps its node, for the selection and the menu.
constexpr int nodeRole = Qt::UserRole + 40;

const FileNode* nodeOf(const QTreeWidgetItem* item) {
    return static_cast<const FileNode*>(item->data(nameColumn, nodeRole).value<const void*>());
}

} // namespace

DuplicatesView::DuplicatesView(AppState& state, QWidget* parent)
    : ScanPage(state, tr("Duplicates"),
               tr("Byte-for-byte identical files (SHA-256). Delete the extra copies, or keep them "
                  "all and let them share the same space on disk."),
               tr("Scan your disk first"),
               tr("Duplicates are found among the files from the last scan."), parent),
      find_(new QPushButton(Symbols::icon("magnifyingglass"), tr("Find Duplicates"))),
      views_(new QStackedWidget) {
    header()->addTrailing(find_);
    connect(find_, &QPushButton::clicked, &state.duplicates(), &DuplicatesState::findDuplicates);
    progressView_ = makeProgressView();
    emptyView_ = makeEmptyView();
    listView_ = makeListView();
    views_->addWidget(progressView_);
    views_->addWidget(emptyView_);
    views_->addWidget(listView_);
    setContent(views_);

    DuplicatesState& duplicates = state.duplicates();
    connect(&duplicates, &DuplicatesState::groupsChanged, this, &DuplicatesView::refresh);
    connect(&duplicates, &DuplicatesState::progressChanged, this, &DuplicatesView::refreshProgress);
    connect(&duplicates, &DuplicatesState::isSharingSpaceChanged, this, [this] {
        placeOverlay();
        overlay_->setVisible(state_.duplicates().isSharingSpace());
        overlay_->raise();
    });
    connect(&state, &AppState::scanChanged, this, &DuplicatesView::refreshProgress);
    refresh();
}

QWidget* DuplicatesView::makeProgressView() {
    auto* view = new QWidget;
    auto* column = new CentredColumn(view, 320);
    column->content()->addWidget(Style::label(tr("Comparing contents…"), Style::TextRole::body), 0,
                                 Qt::AlignHCenter);
    progress_ = new QProgressBar;
    progress_->setRange(0, 1000);
    progress_->setTextVisible(false);
    progress_->setFixedWidth(320);
    column->content()->addWidget(progress_);
    return view;
}

QWidget* DuplicatesView::makeEmptyView() {
    auto* view = new QWidget;
    auto* column = new CentredColumn(view, 360);
    auto* symbol = new SymbolView("doc.on.doc", 40);
    symbol->setTint(Style::Tint::secondary);
    column->content()->addWidget(symbol, 0, Qt::AlignHCenter);
    auto* text =
        Style::label(tr("Click “Find Duplicates” to get started."), Style::TextRole::secondary);
    text->setAlignment(Qt::AlignHCenter);
    column->content()->addWidget(text);
    return view;
}

QWidget* DuplicatesView::makeListView() {
    auto* view = new QWidget;
    auto* layout = new QVBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);

    auto* top = new QHBoxLayout;
    summary_ = Style::label(QString(), Style::TextRole::headline);
    auto* selectAll = new QPushButton(tr("Select All Copies"));
    connect(selectAll, &QPushButton::clicked, this,
            [this] { setSelection(allCopies(state_.duplicates().groups())); });
    top->addWidget(summary_, 1);
    top->addWidget(selectAll);
    layout->addLayout(top);

    tree_ = new QTreeWidget;
    tree_->setColumnCount(3);
    tree_->setHeaderHidden(true);
    tree_->setRootIsDecorated(false);
    tree_->setItemsExpandable(false);
    tree_->setSelectionMode(QAbstractItemView::NoSelection);
    tree_->setItemDelegateForColumn(nameColumn, new FolderLineDelegate(tree_));
    tree_->setContextMenuPolicy(Qt::CustomContextMenu);
    tree_->header()->setStretchLastSection(false);
    tree_->header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    tree_->header()->resizeSection(noteColumn, 240);
    tree_->header()->resizeSection(dateColumn, 120);
    connect(tree_, &QTreeWidget::itemChanged, this, &DuplicatesView::itemChanged);
    connect(tree_, &QTreeWidget::customContextMenuRequested, this, &DuplicatesView::showMenu);
    layout->addWidget(tree_, 1);

    // Over the list while copies are replaced: the list must not change under the user's hand.
    overlay_ = new QFrame(tree_);
    Style::makeCard(overlay_);
    auto* overlayLayout = new QVBoxLayout(overlay_);
    overlayLayout->setContentsMargins(24, 24, 24, 24);
    overlayLayout->addWidget(Style::label(tr("Sharing space…"), Style::TextRole::headline), 0,
                             Qt::AlignHCenter);
    auto* busy = new QProgressBar;
    busy->setRange(0, 0);
    busy->setTextVisible(false);
    overlayLayout->addWidget(busy);
    overlay_->adjustSize();
    overlay_->hide();

    bar_ = new SelectionBar(tr("Delete"));
    bar_->setSecondary(tr("Keep Both, Share Space"),
                       shownText("Keeps every file where it is and stores identical ones only "
                                 "once (APFS clones). Editing one later doesn’t change the "
                                 "other."));
    bar_->onClear = [this] { setSelection({}); };
    bar_->onAction = [this] { state_.duplicates().deleteSelected(selection_); };
    bar_->onSecondary = [this] {
        if (state_.duplicates().shareSelected(selection_)) {
            setSelection({});
        }
    };
    layout->addWidget(bar_);
    return view;
}

void DuplicatesView::resizeEvent(QResizeEvent* event) {
    ScanPage::resizeEvent(event);
    placeOverlay();
}

void DuplicatesView::placeOverlay() {
    overlay_->adjustSize();
    overlay_->move((tree_->width() - overlay_->width()) / 2,
                   (tree_->height() - overlay_->height()) / 2);
}

void DuplicatesView::refreshProgress() {
    const auto progress = state_.duplicates().progress();
    find_->setVisible(state_.scan().has_value());
    find_->setEnabled(!progress.has_value());
    if (progress) {
        progress_->setValue(static_cast<int>(*progress * 1000));
        views_->setCurrentWidget(progressView_);
    } else {
        views_->setCurrentWidget(state_.duplicates().groups().empty() ? emptyView_ : listView_);
    }
}

void DuplicatesView::refresh() {
    // The nodes of the selection may belong to groups that are gone.
    DuplicateSelection kept;
    for (const DuplicateGroup& group : state_.duplicates().groups()) {
        for (const FileNodePtr& file : group.files) {
            if (selection_.contains(file.get())) {
                kept.insert(file.get());
            }
        }
    }
    selection_ = std::move(kept);
    fillTree();
    refreshSelection();
    refreshProgress();
}

void DuplicatesView::fillTree() {
    const std::vector<DuplicateGroup>& groups = state_.duplicates().groups();
    int64_t recoverable = 0;
    for (const DuplicateGroup& group : groups) {
        recoverable += group.recoverableBytes();
    }
    summary_->setText(QString::number(groups.size()) + tr(" groups · ") +
                      qtText(TextForms::size(recoverable)) + tr(" recoverable"));

    filling_ = true;
    tree_->clear();
    const int fileHeight = FolderLineDelegate::rowHeight(tree_->font());
    for (const DuplicateGroup& group : groups) {
        auto* section = new QTreeWidgetItem(tree_);
        section->setText(nameColumn, QString::number(group.files.size()) + tr(" copies · ") +
                                         qtText(TextForms::size(group.size)) + tr(" each"));
        section->setFirstColumnSpanned(true);
        section->setFlags(Qt::ItemIsEnabled);
        QFont bold = tree_->font();
        bold.setBold(true);
        section->setFont(nameColumn, bold);
        for (size_t index = 0; index < group.files.size(); ++index) {
            const FileNodePtr& file = group.files[index];
            auto* row = new QTreeWidgetItem(section);
            row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
            row->setData(nameColumn, nodeRole, QVariant::fromValue<const void*>(file.get()));
            row->setText(nameColumn, nameText(file->name));
            row->setData(nameColumn, NodeTableModel::folderRole,
                         nameText(displayPath(file->path())));
            row->setCheckState(nameColumn,
                               selection_.contains(file.get()) ? Qt::Checked : Qt::Unchecked);
            row->setSizeHint(nameColumn, QSize(0, fileHeight));
            QStringList notes;
            if (index == 0) {
                notes << tr("Suggested original");
            }
            if (group.shared.contains(file.get())) {
                notes << tr("Shares space");
                row->setIcon(noteColumn, Symbols::icon("link", Style::Tint::secondary));
                row->setToolTip(noteColumn, tr("This copy is stored only once on disk together "
                                               "with another one, so it takes no extra space."));
            }
            row->setText(noteColumn, notes.join(QStringLiteral(" · ")));
            row->setForeground(noteColumn, Style::secondaryText(tree_->palette()));
            row->setText(dateColumn, qtText(TextForms::abbreviatedDate(file->modified)));
            row->setForeground(dateColumn, Style::secondaryText(tree_->palette()));
        }
    }
    tree_->expandAll();
    filling_ = false;
}

void DuplicatesView::setSelection(DuplicateSelection selection) {
    selection_ = std::move(selection);
    filling_ = true;
    for (int top = 0; top < tree_->topLevelItemCount(); ++top) {
        QTreeWidgetItem* section = tree_->topLevelItem(top);
        for (int child = 0; child < section->childCount(); ++child) {
            QTreeWidgetItem* row = section->child(child);
            row->setCheckState(nameColumn,
                               selection_.contains(nodeOf(row)) ? Qt::Checked : Qt::Unchecked);
        }
    }
    filling_ = false;
    refreshSelection();
}

void DuplicatesView::itemChanged(QTreeWidgetItem* item) {
    if (filling_ || nodeOf(item) == nullptr) {
        return;
    }
    if (item->checkState(nameColumn) == Qt::Checked) {
        selection_.insert(nodeOf(item));
    } else {
        selection_.erase(nodeOf(item));
    }
    refreshSelection();
}

void DuplicatesView::refreshSelection() {
    int64_t size = 0;
    for (const DuplicateGroup& group : state_.duplicates().groups()) {
        for (const FileNodePtr& file : group.files) {
            if (selection_.contains(file.get())) {
                size += file->size;
            }
        }
    }
    bar_->setSelection(static_cast<int64_t>(selection_.size()), size);
}

void DuplicatesView::showMenu(const QPoint& position) {
    const QTreeWidgetItem* item = tree_->itemAt(position);
    if (item == nullptr || nodeOf(item) == nullptr) {
        return;
    }
    const std::string path = nodeOf(item)->path();
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Show in Finder"), this, [this, path] { revealPaths(state_, {path}); });
    menu->popup(tree_->viewport()->mapToGlobal(position));
}

} // namespace dorvik
