#pragma once

// Scanned nodes as the rows of a table, in the columns a page asks for. It sorts its rows itself
// (see NodeSort.h); a new list of rows keeps the sort in force. It never judges a row's safety
// while the table paints: the verdicts come from a VerdictCache.

#include "scanning/FileNode.h"
#include "ui/files/NodeSort.h"
#include "ui/files/VerdictCache.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <map>
#include <set>
#include <string_view>
#include <vector>

namespace dorvik {

class NodeTableModel : public QAbstractTableModel {
public:
    // On the risk column, the verdict's risk (an int of Risk), and its reason as the tool tip;
    // none until the verdict is known, and the column changes when it comes.
    static constexpr int riskRole = Qt::UserRole + 1;
    // The display path of the folder the row's node lies in ("~/Projects/app"), on the name
    // column; nothing for a root.
    static constexpr int folderRole = Qt::UserRole + 2;

    // `judge` stands in for the safety rules where a test must see who judges and when.
    explicit NodeTableModel(std::vector<NodeColumn> columns, QObject* parent = nullptr,
                            VerdictCache::Judge judge = {});

    // The order of a column's first click: the largest, most numerous or newest first for
    // numbers and dates, A to Z for words. The header asks for it as Qt::InitialSortOrderRole.
    static Qt::SortOrder firstSortOrder(NodeColumn column);

    void setNodes(std::vector<FileNodePtr> nodes);
    // The rows in the order shown.
    const std::vector<FileNodePtr>& nodes() const { return nodes_; }
    const FileNodePtr& node(int row) const { return nodes_.at(static_cast<size_t>(row)); }
    int rowOf(const FileNodePtr& node) const;
    // The revision of the scanned tree the rows come from (AppState::revision): when it changes,
    // the verdicts are judged again.
    void setRevision(int revision);

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
    // The verdict of the row if known; if not, the row's risk cell changes when it comes.
    const SafetyVerdict* verdictOf(int row) const;
    void riskColumnChanged();
    void judgedRowsChanged();

    std::vector<NodeColumn> columns_;
    std::vector<FileNodePtr> nodes_;
    NodeColumn sortColumn_ = NodeColumn::size;
    Qt::SortOrder sortOrder_ = Qt::DescendingOrder;
    mutable std::map<std::string_view, QIcon> icons_; // by symbol, made when first drawn
    VerdictCache* verdicts_;
    // Rows shown without their verdict. Only their cells are drawn again when verdicts come: a
    // change of the whole column would draw every row on show again.
    mutable std::set<int> unjudgedRows_;
};

} // namespace dorvik
