#pragma once

// The deletion history as a table: newest first, one row an entry. Whether an entry can be
// restored is asked each time its row is drawn, since the Trash changes behind the program's back.

#include "removal/HistoryEntry.h"

#include <QAbstractTableModel>

namespace dorvik {

class AppState;

class HistoryModel : public QAbstractTableModel {
public:
    enum Column { date, item, size, method, restore, columns };
    // The display path under an item's name.
    static constexpr int pathRole = Qt::UserRole + 1;

    explicit HistoryModel(const AppState& state, QObject* parent = nullptr);

    const HistoryEntry& entry(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const AppState& state_;
};

} // namespace dorvik
