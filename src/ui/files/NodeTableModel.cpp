#include "ui/files/NodeTableModel.h"

#include "base/TextForms.h"
#include "removal/SafetyRules.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Symbols.h"

#include <QIcon>

#include <algorithm>
#include <utility>

namespace dorvik {

namespace {

QString title(NodeColumn column) {
    switch (column) {
    case NodeColumn::name:
        return QObject::tr("Name");
    case NodeColumn::size:
        return QObject::tr("Size");
    case NodeColumn::files:
        return QObject::tr("Files");
    case NodeColumn::kind:
        return QObject::tr("Kind");
    case NodeColumn::category:
        return QObject::tr("Category");
    case NodeColumn::modified:
        return QObject::tr("Modified");
    case NodeColumn::lastOpened:
        return QObject::tr("Last opened");
    case NodeColumn::risk:
        return QObject::tr("Risk");
    }
    return {};
}

std::string_view symbolOf(const FileNode& node) {
    if (node.unreadable) {
        return "lock.fill";
    }
    return node.isDirectory && !node.isPackage ? "folder" : info(node.kind).symbol;
}

QString text(NodeColumn column, const FileNode& node) {
    switch (column) {
    case NodeColumn::name:
        return nameText(node.name);
    case NodeColumn::size:
        return qtText(TextForms::size(node.size));
    case NodeColumn::files:
        return node.isDirectory ? filesText(node.fileCount)
                                : qtText(TextForms::count(node.fileCount));
    case NodeColumn::kind:
        return shownText(info(node.kind).displayName);
    case NodeColumn::category:
        return shownText(info(node.bucket).displayName);
    case NodeColumn::modified:
        return qtText(TextForms::abbreviatedDate(node.modified));
    case NodeColumn::lastOpened:
        return qtText(TextForms::abbreviatedDate(node.accessed));
    case NodeColumn::risk:
        return {};
    }
    return {};
}

} // namespace

Qt::SortOrder NodeTableModel::firstSortOrder(NodeColumn column) {
    switch (column) {
    case NodeColumn::size:
    case NodeColumn::files:
    case NodeColumn::modified:
    case NodeColumn::lastOpened:
        return Qt::DescendingOrder;
    default:
        return Qt::AscendingOrder;
    }
}

NodeTableModel::NodeTableModel(std::vector<NodeColumn> columns, QObject* parent,
                               VerdictCache::Judge judge)
    : QAbstractTableModel(parent), columns_(std::move(columns)),
      verdicts_(new VerdictCache(
          judge ? std::move(judge) : VerdictCache::Judge(SafetyRules::verdict), this)) {
    verdicts_->onJudged = [this] { judgedRowsChanged(); };
}

void NodeTableModel::setNodes(std::vector<FileNodePtr> nodes) {
    beginResetModel();
    unjudgedRows_.clear(); // the rows on show draw again and ask anew
    nodes_ = std::move(nodes);
    sortNodes(nodes_, sortColumn_, sortOrder_ == Qt::AscendingOrder);
    endResetModel();
}

int NodeTableModel::rowOf(const FileNodePtr& node) const {
    const auto found = std::find(nodes_.begin(), nodes_.end(), node);
    return found == nodes_.end() ? -1 : static_cast<int>(found - nodes_.begin());
}

void NodeTableModel::setRevision(int revision) {
    if (revision != verdicts_->revision()) {
        verdicts_->setRevision(revision);
        riskColumnChanged();
    }
}

int NodeTableModel::columnOf(NodeColumn column) const {
    const auto found = std::find(columns_.begin(), columns_.end(), column);
    return found == columns_.end() ? -1 : static_cast<int>(found - columns_.begin());
}

void NodeTableModel::sortBy(NodeColumn column, Qt::SortOrder order) {
    if (column == NodeColumn::risk) {
        return;
    }
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    unjudgedRows_.clear();
    sortColumn_ = column;
    sortOrder_ = order;
    sortNodes(nodes_, sortColumn_, sortOrder_ == Qt::AscendingOrder);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

const QIcon& NodeTableModel::iconOf(const FileNode& node) const {
    const std::string_view symbol = symbolOf(node);
    auto found = icons_.find(symbol);
    if (found == icons_.end()) {
        found = icons_.emplace(symbol, Symbols::icon(symbol, Style::Tint::secondary)).first;
    }
    return found->second;
}

const SafetyVerdict* NodeTableModel::verdictOf(int row) const {
    const SafetyVerdict* verdict = verdicts_->find(node(row)->path());
    if (verdict == nullptr) {
        unjudgedRows_.insert(row);
    }
    return verdict;
}

void NodeTableModel::riskColumnChanged() {
    unjudgedRows_.clear();
    const int column = columnOf(NodeColumn::risk);
    if (column >= 0 && !nodes_.empty()) {
        emit dataChanged(index(0, column), index(rowCount() - 1, column),
                         {riskRole, Qt::ToolTipRole});
    }
}

void NodeTableModel::judgedRowsChanged() {
    const int column = columnOf(NodeColumn::risk);
    // A row still without its verdict asks again as its cell is drawn.
    const std::set<int> rows = std::exchange(unjudgedRows_, {});
    for (const int row : rows) {
        if (column >= 0 && row < rowCount()) {
            const QModelIndex cell = index(row, column);
            emit dataChanged(cell, cell, {riskRole, Qt::ToolTipRole});
        }
    }
}

int NodeTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(nodes_.size());
}

int NodeTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant NodeTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const FileNode& row = *node(index.row());
    const NodeColumn column = columnAt(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return text(column, row);
    case Qt::DecorationRole:
        return column == NodeColumn::name ? QVariant(iconOf(row)) : QVariant();
    case Qt::TextAlignmentRole:
        return column == NodeColumn::size || column == NodeColumn::files
                   ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::ToolTipRole:
        if (column == NodeColumn::risk) {
            const SafetyVerdict* verdict = verdictOf(index.row());
            return verdict != nullptr ? QVariant(shownText(verdict->reason)) : QVariant();
        }
        if (column == NodeColumn::name && row.unreadable) {
            return tr("No permission to read. Grant Full Disk Access.");
        }
        // Names repeat across folders: the whole path tells the rows apart.
        return column == NodeColumn::name ? nameText(displayPath(row.path())) : QVariant();
    case folderRole:
        if (column == NodeColumn::name) {
            if (const FileNodePtr folder = row.parent.lock()) {
                return nameText(displayPath(folder->path()));
            }
        }
        return {};
    case riskRole:
        if (column == NodeColumn::risk) {
            const SafetyVerdict* verdict = verdictOf(index.row());
            return verdict != nullptr ? QVariant(static_cast<int>(verdict->risk)) : QVariant();
        }
        return {};
    default:
        return {};
    }
}

QVariant NodeTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return title(columnAt(section));
    }
    if (role == Qt::InitialSortOrderRole) {
        return firstSortOrder(columnAt(section));
    }
    if (role == Qt::TextAlignmentRole) {
        const NodeColumn column = columnAt(section);
        return column == NodeColumn::size || column == NodeColumn::files
                   ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    }
    return {};
}

void NodeTableModel::sort(int column, Qt::SortOrder order) {
    if (column >= 0 && column < columnCount()) {
        sortBy(columnAt(column), order);
    }
}

} // namespace dorvik
