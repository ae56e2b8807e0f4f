#pragma once

// Scanned nodes as the rows of a table, in the columns a page asks for. It sorts its rows itself
// (see NodeSort.h); a new list of rows keeps the sort in force.

#include "scanning/FileNode.h"
#include "ui/files/NodeSort.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <map>
#include <string_view>
#include <vector>

namespace dorvik {

class NodeTableModel : public QAbstractTableModel {
public:
    // The verdict's risk (an int of Risk) and its reason, asked of the safety rules each time,
    // for the rows on show only.
    static constexpr int riskRole = Qt::UserRole + 1;
    // The display path of the folder the row's node lies in ("~/Projects/app"), on the name
    // column; nothing for a root.
    static constexpr int folderRole = Qt::UserRole + 2;

    explicit NodeTableModel(std::vector<NodeColumn> columns, QObject* parent = nullptr);

    // The order of a column's first click: the largest, most numerous or newest first for
    // numbers and dates, A to Z for words. The header asks for it as Qt::InitialSortOrderRole.
    static Qt::SortOrder firstSortOrder(NodeColumn column);

    void setNodes(std::vector<FileNodePtr> nodes);
    // The rows in the order shown.
    const std::vector<FileNodePtr>& nodes() const { return nodes_; }
    const FileNodePtr& node(int row) const { return nodes_.at(static_cast<size_t>(row)); }
    int rowOf(const FileNodePtr& node) const;

    NodeColumn columnAt(int column) const { return columns_.at(static_cast<size_t>(column)); }
    int columnOf(NodeColumn column) const;
    // Rows from now on come in this order; ties keep the order they came in.
    void sortBy(NodeColumn column, Qt::SortOrder order);
    NodeColumn sortColumn() const { return sortColumn_; }
    Qt::SortOrder sortOrder() const { return sortOrder_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    const QIcon& iconOf(const FileNode& node) const;

    std::vector<NodeColumn> columns_;
    std::vector<FileNodePtr> nodes_;
    NodeColumn sortColumn_ = NodeColumn::size;
    Qt::SortOrder sortOrder_ = Qt::DescendingOrder;
    mutable std::map<std::string_view, QIcon> icons_; // by symbol, made when first drawn
};

} // namespace dorvik
