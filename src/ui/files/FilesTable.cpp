#include "ui/files/FilesTable.h"

#include "state/AppState.h"
#include "ui/Style.h"
#include "ui/files/FolderLineDelegate.h"
#include "ui/files/NodeActions.h"
#include "ui/files/PreviewWindow.h"
#include "ui/files/SortHeader.h"
#include "ui/widgets/ListTable.h"
#include "ui/widgets/RiskBadge.h"
#include "ui/widgets/SelectionBar.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>

#include <unordered_set>

namespace dorvik {

namespace {

constexpr int tableRowHeight = 28;

// The compact risk badge of the row's verdict, its reason as the tool tip.
class RiskDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        const auto risk = riskFromRaw(index.data(NodeTableModel::riskRole).toInt());
        if (!risk) {
            return;
        }
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        paintRiskBadge(*painter, option.rect.left() + 6, option.rect.center().y(), *risk, true,
                       option.font, option.palette);
        painter->restore();
    }
};

} // namespace

std::vector<NodeColumn> FilesTable::fileListColumns(bool showKind) {
    std::vector<NodeColumn> columns = {NodeColumn::name, NodeColumn::size};
    if (showKind) {
        columns.push_back(NodeColumn::kind);
    }
    columns.insert(columns.end(), {NodeColumn::category, NodeColumn::modified,
                                   NodeColumn::lastOpened, NodeColumn::risk});
    return columns;
}

FilesTable::FilesTable(AppState& state, std::vector<NodeColumn> columns, QWidget* parent)
    : QTableView(parent), state_(state), model_(new NodeTableModel(std::move(columns), this)) {
    setHorizontalHeader(new SortHeader(this));
    setModel(model_);
    model_->setRevision(state_.revision());
    // A page may keep its rows through a change of the tree; their verdicts may not stay.
    connect(&state_, &AppState::revisionChanged, this,
            [this] { model_->setRevision(state_.revision()); });
    styleListTable(this, tableRowHeight);
    setIconSize(QSize(16, 16));
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &FilesTable::showMenu);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (onSelectionChanged) {
            onSelectionChanged();
        }
    });
    connect(this, &QAbstractItemView::activated, this, [this](const QModelIndex& index) {
        if (onActivated && index.isValid()) {
            onActivated(model_->node(index.row()));
        }
    });

    QHeaderView* header = horizontalHeader();
    header->setSortIndicator(model_->columnOf(model_->sortColumn()), model_->sortOrder());
    header->setSortIndicatorShown(true);
    header->setSectionsClickable(true);
    connect(header, &QHeaderView::sortIndicatorChanged, this,
            [this](int column, Qt::SortOrder order) {
                if (model_->columnAt(column) == NodeColumn::risk) {
                    // Risk does not sort: put the indicator back where the rows are.
                    QSignalBlocker quiet(horizontalHeader());
                    horizontalHeader()->setSortIndicator(model_->columnOf(model_->sortColumn()),
                                                         model_->sortOrder());
                    return;
                }
                model_->sortBy(model_->columnAt(column), order);
            });
    for (int column = 0; column < model_->columnCount(); ++column) {
        switch (model_->columnAt(column)) {
        case NodeColumn::name:
            header->setSectionResizeMode(column, QHeaderView::Stretch);
            break;
        case NodeColumn::risk:
            setItemDelegateForColumn(column, new RiskDelegate(this));
            header->resizeSection(column, 56);
            break;
        case NodeColumn::size:
        case NodeColumn::files:
            header->resizeSection(column, 84);
            break;
        case NodeColumn::kind:
        case NodeColumn::category:
            header->resizeSection(column, 140);
            break;
        default:
            header->resizeSection(column, 100);
            break;
        }
    }
}

void FilesTable::showFolderLines() {
    setItemDelegateForColumn(model_->columnOf(NodeColumn::name), new FolderLineDelegate(this));
    verticalHeader()->setDefaultSectionSize(
        std::max(tableRowHeight, FolderLineDelegate::rowHeight(font())));
}

void FilesTable::setEmptyText(const QString& text) {
    emptyText_ = text;
    viewport()->update();
}

void FilesTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (model_->rowCount() > 0 || emptyText_.isEmpty()) {
        return;
    }
    QPainter painter(viewport());
    painter.setPen(Style::secondaryText(palette()));
    painter.drawText(viewport()->rect().adjusted(Style::pageMargin, Style::pageMargin,
                                                 -Style::pageMargin, -Style::pageMargin),
                     Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
}

void FilesTable::setNodes(std::vector<FileNodePtr> nodes) {
    const std::vector<FileNodePtr> selected = selectedNodes();
    model_->setNodes(std::move(nodes));
    if (selected.empty()) {
        return;
    }
    const std::unordered_set<FileNodePtr> wanted(selected.begin(), selected.end());
    const int lastColumn = model_->columnCount() - 1;
    QItemSelection kept;
    const auto& rows = model_->nodes();
    for (size_t row = 0; row < rows.size(); ++row) {
        if (!wanted.contains(rows[row])) {
            continue;
        }
        // Neighbouring rows join one range, so a large selection stays a few ranges.
        size_t end = row;
        while (end + 1 < rows.size() && wanted.contains(rows[end + 1])) {
            ++end;
        }
        kept.select(model_->index(static_cast<int>(row), 0),
                    model_->index(static_cast<int>(end), lastColumn));
        row = end;
    }
    selectionModel()->select(kept, QItemSelectionModel::ClearAndSelect);
    // A reset drops the selection without a word; those who count it must hear.
    if (onSelectionChanged) {
        onSelectionChanged();
    }
}

std::vector<FileNodePtr> FilesTable::selectedNodes() const {
    std::vector<FileNodePtr> nodes;
    const QModelIndexList rows = selectionModel()->selectedRows();
    nodes.reserve(static_cast<size_t>(rows.size()));
    for (const QModelIndex& row : rows) {
        nodes.push_back(model_->node(row.row()));
    }
    return nodes;
}

SelectionBar* FilesTable::makeSelectionBar() {
    auto* bar = new SelectionBar(tr("Delete Items"));
    bar->onClear = [this] { clearSelection(); };
    bar->onAction = [this] { proposeNodeDeletion(state_, selectedNodes()); };
    onSelectionChanged = [this, bar] {
        int64_t size = 0;
        const std::vector<FileNodePtr> nodes = selectedNodes();
        for (const auto& node : nodes) {
            size += node->size;
        }
        bar->setSelection(static_cast<int64_t>(nodes.size()), size);
    };
    return bar;
}

void FilesTable::preview(const FileNodePtr& node) {
    if (preview_ == nullptr) {
        preview_ = new PreviewWindow(this);
    }
    preview_->showNode(node);
}

std::vector<FileNodePtr> FilesTable::nodesForMenuAt(int row) const {
    if (row < 0 || row >= model_->rowCount()) {
        return {};
    }
    if (selectionModel()->isRowSelected(row)) {
        return selectedNodes();
    }
    return {model_->node(row)};
}

void FilesTable::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) {
        const QModelIndex current = currentIndex();
        if (preview_ != nullptr && preview_->isVisible()) {
            preview_->close();
        } else if (current.isValid()) {
            preview(model_->node(current.row()));
        }
        return;
    }
    QTableView::keyPressEvent(event);
}

void FilesTable::showMenu(const QPoint& position) {
    const std::vector<FileNodePtr> nodes = nodesForMenuAt(indexAt(position).row());
    if (nodes.empty()) {
        return;
    }
    QMenu* menu = makeNodeContextMenu(
        state_, nodes, [this](const FileNodePtr& node) { preview(node); }, this);
    menu->popup(viewport()->mapToGlobal(position));
}

} // namespace dorvik
