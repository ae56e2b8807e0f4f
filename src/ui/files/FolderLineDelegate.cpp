#include "ui/files/FolderLineDelegate.h"

#include "ui/Style.h"
#include "ui/files/NodeTableModel.h"

#include <QApplication>
#include <QPainter>

namespace dorvik {

namespace {

constexpr int verticalPadding = 4;
constexpr int iconGap = 6;
constexpr double folderScale = 0.85;

QFont folderFont(const QFont& font) {
    QFont smaller = font;
    smaller.setPointSizeF(font.pointSizeF() * folderScale);
    return smaller;
}

} // namespace

int FolderLineDelegate::rowHeight(const QFont& font) {
    return QFontMetrics(font).height() + QFontMetrics(folderFont(font)).height() +
           2 * verticalPadding;
}

void FolderLineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString name = item.text;
    const QString folder = index.data(NodeTableModel::folderRole).toString();
    // The style draws the row's ground, selection and icon; the two lines are ours.
    item.text.clear();
    const QWidget* widget = option.widget;
    QStyle* style = widget != nullptr ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    const QRect textArea = style->subElementRect(QStyle::SE_ItemViewItemText, &item, widget)
                               .adjusted(iconGap / 2, 0, 0, 0);
    const bool selected = option.state & QStyle::State_Selected;
    const QPalette& palette = option.palette;
    const QFontMetrics nameMetrics(option.font);
    const QFont smaller = folderFont(option.font);
    const QFontMetrics folderMetrics(smaller);
    const int top = option.rect.center().y() -
                    (nameMetrics.height() + (folder.isEmpty() ? 0 : folderMetrics.height())) / 2;

    painter->save();
    painter->setFont(option.font);
    painter->setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(QRect(textArea.left(), top, textArea.width(), nameMetrics.height()),
                      Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                      nameMetrics.elidedText(name, Qt::ElideMiddle, textArea.width()));
    if (!folder.isEmpty()) {
        painter->setFont(smaller);
        painter->setPen(selected ? palette.color(QPalette::HighlightedText)
                                 : Style::secondaryText(palette));
        painter->drawText(QRect(textArea.left(), top + nameMetrics.height(), textArea.width(),
                                folderMetrics.height()),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                          folderMetrics.elidedText(folder, Qt::ElideMiddle, textArea.width()));
    }
    painter->restore();
}

} // namespace dorvik
