#include "ui/pages/developer/DevItemModel.h"

#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Symbols.h"
#include "ui/files/NodeTableModel.h"

#include <algorithm>

namespace dorvik {

namespace {

// A title names folders, which may hold any byte; a rule's title is a text of the program.
QString titleText(const DevItem& item) {
    return nameText(stdText(shownText(item.title)));
}

// Whether `a` goes before `b` when the column rises.
bool rising(DevItemModel::Column column, const DevItem& a, const DevItem& b) {
    switch (column) {
    case DevItemModel::name: {
        const int order = titleText(a).compare(titleText(b), Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.path < b.path;
    }
    case DevItemModel::whatItIs:
        return a.detail != b.detail ? a.detail < b.detail : a.path < b.path;
    case DevItemModel::lastModified:
        return a.lastTouched != b.lastTouched ? a.lastTouched < b.lastTouched : a.path < b.path;
    default:
        return a.size != b.size ? a.size < b.size : a.path < b.path;
    }
}

bool isNumeric(int column) {
    return column == DevItemModel::size || column == DevItemModel::lastModified;
}

} // namespace

DevItemModel::DevItemModel(QObject* parent)
    : QAbstractTableModel(parent), icon_(Symbols::icon("shippingbox", Style::Tint::secondary)) {}

void DevItemModel::setItems(std::vector<DevItem> items) {
    beginResetModel();
    items_ = std::move(items);
    sortRows();
    endResetModel();
}

void DevItemModel::sortRows() {
    std::ranges::sort(items_, [this](const DevItem& a, const DevItem& b) {
        return sortOrder_ == Qt::AscendingOrder ? rising(sortColumn_, a, b)
                                                : rising(sortColumn_, b, a);
    });
}

void DevItemModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= columns) {
        return;
    }
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::string> paths;
    for (const QModelIndex& index : before) {
        paths.push_back(item(index.row()).path);
    }
    sortColumn_ = static_cast<Column>(column);
    sortOrder_ = order;
    sortRows();
    // The selection follows its rows to where they now stand.
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const auto found = std::ranges::find(items_, paths[static_cast<size_t>(i)], &DevItem::path);
        after.push_back(index(static_cast<int>(found - items_.begin()), before[i].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

int DevItemModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

int DevItemModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant DevItemModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const DevItem& row = item(index.row());
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        switch (column) {
        case name:
            return titleText(row);
        case whatItIs:
            return shownText(row.detail);
        case lastModified:
            return qtText(TextForms::abbreviatedDate(row.lastTouched));
        default:
            return qtText(TextForms::size(row.size));
        }
    case Qt::DecorationRole:
        return column == name ? QVariant(icon_) : QVariant();
    case Qt::ToolTipRole:
        if (column == whatItIs) {
            return shownText(row.detail);
        }
        return column == name ? nameText(displayPath(row.path)) : QVariant();
    case NodeTableModel::folderRole:
        // Many rows share a title ("app / node_modules"): the path under it tells them apart.
        return column == name ? nameText(displayPath(row.path)) : QVariant();
    case Qt::TextAlignmentRole:
        return column == size ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                              : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant DevItemModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns) {
        return {};
    }
    if (role == Qt::InitialSortOrderRole) {
        // The newest and the largest first; words from A.
        return isNumeric(section) ? Qt::DescendingOrder : Qt::AscendingOrder;
    }
    if (role == Qt::TextAlignmentRole) {
        return section == size ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                               : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case name:
        return tr("Name");
    case whatItIs:
        return tr("What It Is");
    case lastModified:
        return tr("Project Last Modified");
    default:
        return tr("Size");
    }
}

} // namespace dorvik
