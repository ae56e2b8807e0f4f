#pragma once

// The leftovers as the rows of the App Leftovers table: those whose identifier or path holds the
// search text, in the sort in force (the largest first until the user picks another column).

#include "apps/LeftoverSearch.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <vector>

namespace dorvik {

class LeftoverModel : public QAbstractTableModel {
public:
    enum Column { identifier, location, size, modified, columns };

    explicit LeftoverModel(QObject* parent = nullptr);

    // Replaces every leftover; the rows are those the search text lets through.
    void setLeftovers(std::vector<Leftover> leftovers);
    // Case aside; empty shows every row.
    void setSearchText(const QString& text);

    // The rows in the order shown.
    const std::vector<Leftover>& rows() const { return rows_; }
    const Leftover& row(int index) const { return rows_.at(static_cast<size_t>(index)); }

    Column sortColumn() const { return sortColumn_; }
    Qt::SortOrder sortOrder() const { return sortOrder_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    void rebuildRows();

    std::vector<Leftover> all_;
    std::vector<Leftover> rows_;
    QString searchText_;
    Column sortColumn_ = size;
    Qt::SortOrder sortOrder_ = Qt::DescendingOrder;
    QIcon icon_;
};

} // namespace dorvik
