#pragma once

// The applications as the rows of the Applications page's table: the name with the icon and the
// badges, the total and the last use. It sorts its rows itself, the largest total first at the
// start; new rows keep the sort in force.

#include "apps/InstalledApp.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <map>
#include <string>
#include <vector>

namespace dorvik {

class AppTableModel : public QAbstractTableModel {
public:
    enum Column { name, total, lastUsed, columns };
    // The badges of a row's name ("App Store", "Apple", "Running"), as a QStringList.
    static constexpr int badgesRole = Qt::UserRole + 1;

    explicit AppTableModel(QObject* parent = nullptr);

    // Replaces the rows, in the sort in force.
    void setApps(std::vector<InstalledApp> apps);
    const std::vector<InstalledApp>& apps() const { return apps_; }
    const InstalledApp& app(int row) const { return apps_.at(static_cast<size_t>(row)); }
    // The row of the bundle at `path`, or -1.
    int rowOf(const std::string& path) const;

    // The identifiers of the applications running now; the "Running" badges follow them.
    void setRunning(std::vector<std::string> identifiers);

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
    QIcon iconOf(const std::string& path) const;

    std::vector<InstalledApp> apps_;
    std::vector<std::string> running_;
    Column sortColumn_ = total;
    Qt::SortOrder sortOrder_ = Qt::DescendingOrder;
    // Icons are read from the bundles once, when a row first shows.
    mutable std::map<std::string, QIcon> icons_;
};

} // namespace dorvik
