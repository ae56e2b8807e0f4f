#include "ui/pages/leftovers/LeftoverModel.h"

#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <algorithm>

namespace dorvik {

namespace {

// Whether `a` goes before `b` when the column rises; ties keep the order of the paths.
bool rising(LeftoverModel::Column column, const Leftover& a, const Leftover& b) {
    switch (column) {
    case LeftoverModel::identifier: {
        const int order =
            nameText(a.identifier).compare(nameText(b.identifier), Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.path < b.path;
    }
    case LeftoverModel::location:
        return a.location != b.location ? a.location < b.location : a.path < b.path;
    case LeftoverModel::modified:
        return a.modified != b.modified ? a.modified < b.modified : a.path < b.path;
    default:
        return a.size != b.size ? a.size < b.size : a.path < b.path;
    }
}

bool isNumeric(int column) {
    return column == LeftoverModel::size || column == LeftoverModel::modified;
}

} // namespace

LeftoverModel::LeftoverModel(QObject* parent)
    : QAbstractTableModel(parent), icon_(Symbols::icon("folder.fill", Style::Tint::secondary)) {}

void LeftoverModel::setLeftovers(std::vector<Leftover> leftovers) {
    all_ = std::move(leftovers);
    rebuildRows();
}

void LeftoverModel::setSearchText(const QString& text) {
    if (text.trimmed() != searchText_) {
        searchText_ = text.trimmed();
        rebuildRows();
    }
}

void LeftoverModel::rebuildRows() {
    beginResetModel();
    rows_.clear();
    for (const Leftover& leftover : all_) {
        if (searchText_.isEmpty() ||
            nameText(leftover.identifier).contains(searchText_, Qt::CaseInsensitive) ||
            nameText(displayPath(leftover.path)).contains(searchText_, Qt::CaseInsensitive)) {
            rows_.push_back(leftover);
        }
    }
    std::ranges::sort(rows_, [this](const Leftover& a, const Leftover& b) {
        return sortOrder_ == Qt::AscendingOrder ? rising(sortColumn_, a, b)
                                                : rising(sortColumn_, b, a);
    });
    endResetModel();
}

void LeftoverModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= columns) {
        return;
    }
    sortColumn_ = static_cast<Column>(column);
    sortOrder_ = order;
    rebuildRows();
}

int LeftoverModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int LeftoverModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant LeftoverModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const Leftover& leftover = row(index.row());
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        switch (column) {
        case identifier:
            return nameText(leftover.identifier);
        case location:
            return shownText(leftover.location);
        case modified:
            return leftover.modified ? qtText(TextForms::abbreviatedDate(*leftover.modified))
                                     : QStringLiteral("—");
        default:
            return qtText(TextForms::size(leftover.size));
        }
    case Qt::DecorationRole:
        return column == identifier ? QVariant(icon_) : QVariant();
    case Qt::ToolTipRole:
        return column == identifier ? nameText(displayPath(leftover.path)) : QVariant();
    case Qt::TextAlignmentRole:
        return column == size ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                              : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant LeftoverModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns) {
        return {};
    }
    if (role == Qt::InitialSortOrderRole) {
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
    case identifier:
        return tr("Identifier");
    case location:
        return tr("Location");
    case modified:
        return tr("Modified");
    default:
        return tr("Size");
    }
}

} // namespace dorvik
