#include "ui/files/NodeTableModel.h"

#include "base/TextForms.h"
#include "removal/SafetyRules.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Symbols.h"

#include <QIcon>

#include <algorithm>

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

NodeTableModel::NodeTableModel(std::vector<NodeColumn> columns, QObject* parent)
    : QAbstractTableModel(parent), columns_(std::move(columns)) {}

void NodeTableModel::setNodes(std::vector<FileNodePtr> nodes) {
    beginResetModel();
    nodes_ = std::move(nodes);
    sortNodes(nodes_, sortColumn_, sortOrder_ == Qt::AscendingOrder);
    endResetModel();
}

int NodeTableModel::rowOf(const FileNodePtr& node) const {
    const auto found = std::find(nodes_.begin(), nodes_.end(), node);
    return found == nodes_.end() ? -1 : static_cast<int>(found - nodes_.begin());
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
            return shownText(SafetyRules::verdict(row.path()).reason);
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
        return column == NodeColumn::risk
                   ? QVariant(static_cast<int>(SafetyRules::verdict(row.path()).risk))
                   : QVariant();
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
