#include "ui/pages/leftovers/LeftoversView.h"

#include "base/PathNames.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/NodeActions.h"
#include "ui/files/SortHeader.h"
#include "ui/pages/leftovers/LeftoverModel.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/ListTable.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/ScanningRing.h"
#include "ui/widgets/SelectionBar.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QStackedLayout>
#include <QTableView>
#include <QVBoxLayout>

#include <set>

namespace dorvik {

namespace {

constexpr int rowHeight = 28;
constexpr int spinnerDiameter = 28;
constexpr int searchWidth = 240;

enum StackPage { tablePage, statusPage };

std::vector<std::string> pathsOf(const std::vector<Leftover>& leftovers) {
    std::vector<std::string> paths;
    for (const Leftover& leftover : leftovers) {
        paths.push_back(leftover.path);
    }
    return paths;
}

} // namespace

LeftoversView::LeftoversView(AppState& state, QWidget* parent)
    : Page(tr("App Leftovers"),
           tr("Data in ~/Library from apps that are no longer installed on this Mac."), parent),
      state_(state), model_(new LeftoverModel(this)), table_(makeTable()), note_(makeNote()),
      search_(new QLineEdit), status_(Style::label({}, Style::TextRole::secondary)),
      stack_(new QStackedLayout), bar_(new SelectionBar(tr("Delete"))) {
    auto* searchAgain = new QPushButton(Symbols::icon("arrow.clockwise"), tr("Refresh"));
    header()->addTrailing(searchAgain);
    connect(searchAgain, &QPushButton::clicked, this, [this] { state_.leftovers().refresh(); });

    search_->setPlaceholderText(tr("Search"));
    search_->setClearButtonEnabled(true);
    search_->setMaximumWidth(searchWidth);
    search_->addAction(Symbols::icon("magnifyingglass", Style::Tint::secondary),
                       QLineEdit::LeadingPosition);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        changeRows([this, &text] { model_->setSearchText(text); });
    });
    auto* searchRow = new QHBoxLayout;
    searchRow->addWidget(search_);
    searchRow->addStretch();

    // While searching: the ring and its line; after a search with no rows: why there are none.
    auto* statusBox = new QWidget;
    auto* statusLayout = new QVBoxLayout(statusBox);
    statusLayout->addStretch();
    auto* ring = new ScanningRing(spinnerDiameter);
    ring->setObjectName(QStringLiteral("searchRing"));
    statusLayout->addWidget(ring, 0, Qt::AlignHCenter);
    status_->setAlignment(Qt::AlignCenter);
    status_->setWordWrap(true);
    statusLayout->addWidget(status_);
    statusLayout->addStretch();
    stack_->addWidget(table_);
    stack_->addWidget(statusBox);

    bar_->onClear = [this] { table_->clearSelection(); };
    bar_->onAction = [this] { state_.leftovers().proposeRemoval(selectedLeftovers()); };
    bar_->actionButton()->setToolTip(tr("Delete App Leftovers"));

    body()->addWidget(note_);
    body()->addLayout(searchRow);
    body()->addLayout(stack_, 1);
    body()->addWidget(bar_);

    connect(&state.leftovers(), &LeftoversState::leftoversChanged, this, &LeftoversView::refresh);
    connect(&state.leftovers(), &LeftoversState::loadingChanged, this, &LeftoversView::refresh);
    refresh();
}

QTableView* LeftoversView::makeTable() {
    auto* table = new QTableView;
    table->setHorizontalHeader(new SortHeader(table));
    table->setModel(model_);
    styleListTable(table, rowHeight);
    table->setIconSize(QSize(16, 16));
    QHeaderView* columns = table->horizontalHeader();
    columns->setSectionsClickable(true);
    columns->setSortIndicatorShown(true);
    columns->setSortIndicator(model_->sortColumn(), model_->sortOrder());
    columns->setSectionResizeMode(LeftoverModel::identifier, QHeaderView::Stretch);
    columns->resizeSection(LeftoverModel::location, 220);
    columns->resizeSection(LeftoverModel::size, 96);
    columns->resizeSection(LeftoverModel::modified, 130);
    connect(columns, &QHeaderView::sortIndicatorChanged, this,
            [this](int column, Qt::SortOrder order) {
                changeRows([this, column, order] { model_->sort(column, order); });
            });
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &LeftoversView::selectionChanged);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(table, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        const std::vector<Leftover> leftovers = leftoversForMenuAt(table_->indexAt(position).row());
        if (!leftovers.empty()) {
            makeMenu(leftovers)->popup(table_->viewport()->mapToGlobal(position));
        }
    });
    return table;
}

QWidget* LeftoversView::makeNote() {
    auto* note = new QFrame;
    Style::makeCard(note);
    auto* symbol = new SymbolView("info.circle", Style::smallIcon);
    symbol->setTint(Style::Tint::secondary);
    auto* text = Style::label(
        tr("Only folders named after an identifier (com.company.app) that don’t match any "
           "installed app are listed. Review them: some may belong to a tool without a visible "
           "app."),
        Style::TextRole::secondary);
    text->setWordWrap(true);
    const LeadingSymbolLayout layout =
        layOutWithLeadingSymbol(note, symbol, Style::cardPadding - 4, Style::gap);
    layout.column->addWidget(text);
    layout.row->setAlignment(symbol, Qt::AlignVCenter);
    return note;
}

void LeftoversView::showEvent(QShowEvent* event) {
    Page::showEvent(event);
    LeftoversState& leftovers = state_.leftovers();
    if (!leftovers.hasSearched() && !leftovers.isLoading()) {
        leftovers.refresh();
    }
}

void LeftoversView::refresh() {
    changeRows([this] { model_->setLeftovers(state_.leftovers().leftovers()); });
}

void LeftoversView::changeRows(const std::function<void()>& change) {
    const std::vector<std::string> selected = pathsOf(selectedLeftovers());
    change();
    const std::set<std::string> wanted(selected.begin(), selected.end());
    QItemSelection kept;
    for (int row = 0; row < model_->rowCount(); ++row) {
        if (wanted.contains(model_->row(row).path)) {
            kept.select(model_->index(row, 0), model_->index(row, LeftoverModel::columns - 1));
        }
    }
    table_->selectionModel()->select(kept, QItemSelectionModel::ClearAndSelect);
    showRows();
}

void LeftoversView::showRows() {
    const LeftoversState& leftovers = state_.leftovers();
    const bool searching = leftovers.isLoading();
    findChild<ScanningRing*>(QStringLiteral("searchRing"))->setVisible(searching);
    if (searching) {
        status_->setText(tr("Comparing ~/Library with your installed apps…"));
    } else if (!leftovers.leftovers().empty()) {
        status_->setText(tr("No leftovers match the search."));
    } else {
        status_->setText(leftovers.hasSearched() ? tr("No leftovers found.") : QString());
    }
    stack_->setCurrentIndex(!searching && model_->rowCount() > 0 ? tablePage : statusPage);
    search_->setEnabled(!leftovers.leftovers().empty());
    selectionChanged();
}

std::vector<Leftover> LeftoversView::selectedLeftovers() const {
    std::vector<Leftover> selected;
    QModelIndexList rows = table_->selectionModel()->selectedRows();
    std::ranges::sort(rows,
                      [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    for (const QModelIndex& row : rows) {
        selected.push_back(model_->row(row.row()));
    }
    return selected;
}

void LeftoversView::selectionChanged() {
    int64_t size = 0;
    const std::vector<Leftover> selected = selectedLeftovers();
    for (const Leftover& leftover : selected) {
        size += leftover.size;
    }
    bar_->setSelection(static_cast<int64_t>(selected.size()), size);
}

std::vector<Leftover> LeftoversView::leftoversForMenuAt(int row) const {
    if (row < 0 || row >= model_->rowCount()) {
        return {};
    }
    if (table_->selectionModel()->isRowSelected(row)) {
        return selectedLeftovers();
    }
    return {model_->row(row)};
}

QMenu* LeftoversView::makeMenu(const std::vector<Leftover>& leftovers) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const std::vector<std::string> paths = pathsOf(leftovers);
    menu->addAction(tr("Show in Finder"), [this, paths] { revealPaths(state_, paths); });
    return menu;
}

} // namespace dorvik
