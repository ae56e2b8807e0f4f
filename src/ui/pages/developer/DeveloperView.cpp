#include "ui/pages/developer/DeveloperView.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/Desktop.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/files/FolderLineDelegate.h"
#include "ui/files/NodeActions.h"
#include "ui/files/SortHeader.h"
#include "ui/pages/developer/DevItemModel.h"
#include "ui/pages/developer/VirtualDisksCard.h"
#include "ui/shell/ScanToolbar.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/ListTable.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/SelectionBar.h"
#include "ui/widgets/SymbolView.h"

#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStackedLayout>
#include <QTableView>
#include <QVBoxLayout>

#include <set>

namespace dorvik {

namespace {

constexpr int minimumRowHeight = 28;

std::vector<std::string> pathsOf(const std::vector<DevItem>& items) {
    std::vector<std::string> paths;
    for (const DevItem& item : items) {
        paths.push_back(item.path);
    }
    return paths;
}

QString itemsText(int64_t count) {
    return count == 1 ? QObject::tr("1 item")
                      : QObject::tr("%1 items").arg(qtText(TextForms::count(count)));
}

} // namespace

DeveloperView::DeveloperView(AppState& state, QWidget* parent)
    : Page(tr("Developer"),
           tr("Dependencies and build artifacts that can be regenerated: node_modules, virtual "
              "environments, DerivedData, package caches."),
           parent),
      state_(state), model_(new DevItemModel(this)), table_(makeTable()), hint_(makeHint()),
      emptyNote_(Style::label({}, Style::TextRole::tertiary)), listStack_(new QStackedLayout),
      bar_(new SelectionBar(tr("Clean Selected"))),
      footnote_(Style::label({}, Style::TextRole::caption)), disks_(new VirtualDisksCard(state)) {
    header()->addTrailing(new ScanToolbar(state));

    emptyNote_->setAlignment(Qt::AlignCenter);
    emptyNote_->setWordWrap(true);
    listStack_->addWidget(table_);
    listStack_->addWidget(emptyNote_);

    bar_->onClear = [this] { table_->clearSelection(); };
    bar_->onAction = [this] { state_.developer().proposeCleaning(selectedItems()); };
    bar_->actionButton()->setToolTip(tr("Clean Developer Artifacts"));

    body()->addWidget(hint_);
    body()->addLayout(listStack_, 1);
    body()->addWidget(bar_);
    body()->addWidget(footnote_);
    body()->addWidget(disks_);

    connect(&state.developer(), &DeveloperState::changed, this, &DeveloperView::refresh);
    connect(&state.developer(), &DeveloperState::isLoadingJunkChanged, this,
            &DeveloperView::refresh);
    refresh();
}

QTableView* DeveloperView::makeTable() {
    auto* table = new QTableView;
    table->setHorizontalHeader(new SortHeader(table));
    table->setModel(model_);
    styleListTable(table, std::max(minimumRowHeight, FolderLineDelegate::rowHeight(font())));
    table->setIconSize(QSize(16, 16));
    table->setItemDelegateForColumn(DevItemModel::name, new FolderLineDelegate(table));
    QHeaderView* columns = table->horizontalHeader();
    columns->setSectionsClickable(true);
    columns->setSortIndicatorShown(true);
    columns->setSortIndicator(model_->sortColumn(), model_->sortOrder());
    columns->setSectionResizeMode(DevItemModel::name, QHeaderView::Stretch);
    columns->setSectionResizeMode(DevItemModel::whatItIs, QHeaderView::Stretch);
    columns->resizeSection(DevItemModel::lastModified, 170);
    columns->resizeSection(DevItemModel::size, 96);
    connect(columns, &QHeaderView::sortIndicatorChanged, model_, &DevItemModel::sort);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &DeveloperView::selectionChanged);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(table, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        const std::vector<DevItem> items = itemsForMenuAt(table_->indexAt(position).row());
        if (!items.empty()) {
            makeMenu(items)->popup(table_->viewport()->mapToGlobal(position));
        }
    });
    return table;
}

QWidget* DeveloperView::makeHint() {
    auto* hint = new QFrame;
    Style::makeCard(hint);
    auto* symbol = new SymbolView("info.circle", Style::smallIcon);
    symbol->setTint(Style::Tint::secondary);
    auto* text = Style::label(tr("Scan your disk (or your home folder) to find node_modules and "
                                 "virtual environments in your projects."),
                              Style::TextRole::secondary);
    text->setWordWrap(true);
    const LeadingSymbolLayout layout =
        layOutWithLeadingSymbol(hint, symbol, Style::cardPadding - 4, Style::gap);
    layout.column->addWidget(text);
    layout.row->setAlignment(symbol, Qt::AlignVCenter);
    return hint;
}

void DeveloperView::showEvent(QShowEvent* event) {
    Page::showEvent(event);
    DeveloperState& developer = state_.developer();
    if (!developer.junk() && !developer.isLoadingJunk()) {
        developer.loadJunk();
    }
}

void DeveloperView::refresh() {
    const std::vector<std::string> selected = pathsOf(selectedItems());
    std::vector<DevItem> items = state_.developer().developerItems();
    int64_t total = 0;
    for (const DevItem& item : items) {
        total += item.size;
    }
    const auto count = static_cast<int64_t>(items.size());
    model_->setItems(std::move(items));

    // The rows still there stay selected.
    const std::set<std::string> wanted(selected.begin(), selected.end());
    QItemSelection kept;
    for (int row = 0; row < model_->rowCount(); ++row) {
        if (wanted.contains(model_->item(row).path)) {
            kept.select(model_->index(row, 0), model_->index(row, DevItemModel::columns - 1));
        }
    }
    table_->selectionModel()->select(kept, QItemSelectionModel::ClearAndSelect);
    selectionChanged();

    const bool scanned = state_.scan().has_value();
    hint_->setVisible(!scanned);
    if (count == 0) {
        emptyNote_->setText(state_.developer().isLoadingJunk()
                                ? tr("Looking for developer caches…")
                                : tr("No developer artifacts found."));
    }
    listStack_->setCurrentIndex(count == 0 ? 1 : 0);
    footnote_->setVisible(count > 0);
    footnote_->setText(itemsText(count) + QStringLiteral(" · ") + qtText(TextForms::size(total)));
    disks_->setDisks(state_.developer().virtualDisks());
}

std::vector<DevItem> DeveloperView::selectedItems() const {
    std::vector<DevItem> items;
    QModelIndexList rows = table_->selectionModel()->selectedRows();
    std::ranges::sort(rows,
                      [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    for (const QModelIndex& row : rows) {
        items.push_back(model_->item(row.row()));
    }
    return items;
}

void DeveloperView::selectionChanged() {
    int64_t size = 0;
    const std::vector<DevItem> items = selectedItems();
    for (const DevItem& item : items) {
        size += item.size;
    }
    bar_->setSelection(static_cast<int64_t>(items.size()), size);
}

std::vector<DevItem> DeveloperView::itemsForMenuAt(int row) const {
    if (row < 0 || row >= model_->rowCount()) {
        return {};
    }
    if (table_->selectionModel()->isRowSelected(row)) {
        return selectedItems();
    }
    return {model_->item(row)};
}

QMenu* DeveloperView::makeMenu(const std::vector<DevItem>& items) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const std::vector<std::string> paths = pathsOf(items);
    menu->addAction(tr("Show in Finder"), [this, paths] { revealPaths(state_, paths); });
    menu->addAction(tr("Copy Path"), [paths] { Desktop::copyPaths(paths); });
    menu->addSeparator();
    const QString clean = items.size() == 1
                              ? tr("Clean %1").arg(nameText(stdText(shownText(items[0].title))))
                              : tr("Clean %1").arg(itemsText(static_cast<int64_t>(items.size())));
    menu->addAction(clean, [this, items] { state_.developer().proposeCleaning(items); });
    return menu;
}

} // namespace dorvik
