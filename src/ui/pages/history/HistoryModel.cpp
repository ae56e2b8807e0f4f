#include "ui/pages/history/HistoryModel.h"

#include "base/TextForms.h"
#include "removal/DeletionHistory.h"
#include "scanning/ScanPaths.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"

#include <QGuiApplication>

#include <filesystem>

namespace dorvik {

HistoryModel::HistoryModel(const AppState& state, QObject* parent)
    : QAbstractTableModel(parent), state_(state) {
    connect(&state.removal(), &RemovalState::historyChanged, this, [this] {
        beginResetModel();
        endResetModel();
    });
}

const HistoryEntry& HistoryModel::entry(int row) const {
    return state_.removal().history().entries().at(static_cast<size_t>(row));
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(state_.removal().history().entries().size());
}

int HistoryModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
    const HistoryEntry& row = entry(index.row());
    if (role == Qt::DisplayRole) {
        switch (index.column()) {
        case date:
            return qtText(TextForms::abbreviatedDateTime(row.date));
        case item:
            return nameText(std::filesystem::path(row.originalPath).filename().string());
        case size:
            return qtText(TextForms::size(row.size));
        case method:
            return shownText(historyMethod(row));
        case restore:
            return canRestore(row) ? tr("Restore") : QString();
        default:
            return {};
        }
    }
    if (role == pathRole && index.column() == item) {
        return nameText(displayPath(row.originalPath));
    }
    if (role == Qt::ForegroundRole && index.column() == method) {
        const QPalette palette = QGuiApplication::palette();
        return row.restored ? Style::positive(palette) : Style::secondaryText(palette);
    }
    if (role == Qt::TextAlignmentRole && index.column() == size) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    return {};
}

QVariant HistoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant((section == size ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case date:
        return tr("Date");
    case item:
        return tr("Item");
    case size:
        return tr("Size");
    case method:
        return tr("Method");
    default:
        return QString();
    }
}

} // namespace dorvik
