#pragma once

// The name cell of the file lists, whose rows come from folders all over the disk: the name on
// the first line and, under it in quieter text, the folder it lies in, so that thirty files of
// one name can be told apart before one is deleted.

#include <QStyledItemDelegate>

namespace dorvik {

class FolderLineDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    // The height of a row that holds both lines in `font`.
    static int rowHeight(const QFont& font);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace dorvik
