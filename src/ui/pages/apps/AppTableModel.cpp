#include "ui/pages/apps/AppTableModel.h"

#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/pages/apps/AppIcon.h"

#include <algorithm>

namespace dorvik {

namespace {

// Whether `a` goes before `b` when the column rises. An application never known to be used
// counts as used in the distant past.
bool rising(AppTableModel::Column column, const InstalledApp& a, const InstalledApp& b) {
    switch (column) {
    case AppTableModel::name: {
        const int order = nameText(a.name).compare(nameText(b.name), Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.path < b.path;
    }
    case AppTableModel::lastUsed: {
        const double usedA = a.lastUsed.value_or(0);
        const double usedB = b.lastUsed.value_or(0);
        return usedA != usedB ? usedA < usedB : a.path < b.path;
    }
    default:
        return a.totalSize() != b.totalSize() ? a.totalSize() < b.totalSize() : a.path < b.path;
    }
}

} // namespace

AppTableModel::AppTableModel(QObject* parent) : QAbstractTableModel(parent) {}

void AppTableModel::setApps(std::vector<InstalledApp> apps) {
    beginResetModel();
    apps_ = std::move(apps);
    sortRows();
    endResetModel();
}

int AppTableModel::rowOf(const std::string& path) const {
    const auto found = std::ranges::find(apps_, path, &InstalledApp::path);
    return found == apps_.end() ? -1 : static_cast<int>(found - apps_.begin());
}

void AppTableModel::setRunning(std::vector<std::string> identifiers) {
    std::ranges::sort(identifiers);
    if (identifiers == running_) {
        return;
    }
    running_ = std::move(identifiers);
    if (!apps_.empty()) {
        emit dataChanged(index(0, name), index(rowCount() - 1, name), {badgesRole});
    }
}

void AppTableModel::sortRows() {
    std::ranges::sort(apps_, [this](const InstalledApp& a, const InstalledApp& b) {
        return sortOrder_ == Qt::AscendingOrder ? rising(sortColumn_, a, b)
                                                : rising(sortColumn_, b, a);
    });
}

void AppTableModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= columns) {
        return;
    }
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::string> paths;
    for (const QModelIndex& index : before) {
        paths.push_back(app(index.row()).path);
    }
    sortColumn_ = static_cast<Column>(column);
    sortOrder_ = order;
    sortRows();
    // The selection follows its rows to where they now stand.
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        after.push_back(index(rowOf(paths[static_cast<size_t>(i)]), before[i].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QIcon AppTableModel::iconOf(const std::string& path) const {
    auto found = icons_.find(path);
    if (found == icons_.end()) {
        found = icons_.emplace(path, appIcon(path)).first;
    }
    return found->second;
}

int AppTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(apps_.size());
}

int AppTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant AppTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const InstalledApp& row = app(index.row());
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        switch (column) {
        case name:
            return nameText(row.name);
        case lastUsed:
            return row.lastUsed ? qtText(TextForms::abbreviatedDate(*row.lastUsed))
                                : tr("Never / unknown");
        default:
            return qtText(TextForms::size(row.totalSize()));
        }
    case Qt::DecorationRole:
        return column == name ? QVariant(iconOf(row.path)) : QVariant();
    case Qt::ToolTipRole:
        return column == name ? nameText(displayPath(row.path)) : QVariant();
    case badgesRole: {
        QStringList badges;
        if (row.isAppStore) {
            badges.append(tr("App Store"));
        }
        if (row.isApple) {
            badges.append(tr("Apple"));
        }
        if (isRunning(row, running_)) {
            badges.append(tr("Running"));
        }
        return badges;
    }
    case Qt::TextAlignmentRole:
        return column == total ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                               : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant AppTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns) {
        return {};
    }
    if (role == Qt::InitialSortOrderRole) {
        // The largest and the most recent first; names from A.
        return section == name ? Qt::AscendingOrder : Qt::DescendingOrder;
    }
    if (role == Qt::TextAlignmentRole) {
        return section == total ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case name:
        return tr("Name");
    case lastUsed:
        return tr("Last Used");
    default:
        return tr("Total");
    }
}

} // namespace dorvik
