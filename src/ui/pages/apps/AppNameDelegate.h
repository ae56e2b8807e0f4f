#pragma once

// The name cell of the applications table: the icon, the name, and after it the row's badges
// ("App Store", "Apple", "Running") as small rounded labels that keep their room when the name
// must give way.

#include <QStyledItemDelegate>

namespace dorvik {

class AppNameDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace dorvik
