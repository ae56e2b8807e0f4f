#pragma once

// The developer items as the rows of the Developer page's table: what each is, when its project
// last changed and how much it takes. It sorts its rows itself; new rows keep the sort in force.

#include "cleaning/DeveloperArtifacts.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <vector>

namespace dorvik {

class DevItemModel : public QAbstractTableModel {
public:
    enum Column { name, whatItIs, lastModified, size, columns };

    explicit DevItemModel(QObject* parent = nullptr);

    // Replaces the rows, in the sort in force.
    void setItems(std::vector<DevItem> items);
    // The rows in the order shown.
    const std::vector<DevItem>& items() const { return items_; }
    const DevItem& item(int row) const { return items_.at(static_cast<size_t>(row)); }

    Column sortColumn() const { return sortColumn_; }
    Qt::SortOrder sortOrder() const { return sortOrder_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    // Rows that tie keep the order of their paths.
    void sort(int column, Qt::SortOrder order) override;

private:
    void sortRows();

    std::vector<DevItem> items_;
    // The largest first: what frees the most is what the page is for.
    Column sortColumn_ = size;
    Qt::SortOrder sortOrder_ = Qt::DescendingOrder;
    QIcon icon_;
};

} // namespace dorvik
