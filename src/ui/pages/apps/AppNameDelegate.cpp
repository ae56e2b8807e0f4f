#include "ui/pages/apps/AppNameDelegate.h"

#include "ui/Style.h"
#include "ui/pages/apps/AppTableModel.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

namespace dorvik {

namespace {

constexpr int badgePadding = 6; // left and right inside a badge
constexpr int badgeGap = 6;     // between the name and a badge, and between badges

QFont badgeFont(const QFont& font) {
    QFont smaller = font;
    smaller.setPointSizeF(font.pointSizeF() * 0.8);
    return smaller;
}

int badgeWidth(const QFontMetrics& metrics, const QString& badge) {
    return metrics.horizontalAdvance(badge) + 2 * badgePadding;
}

int badgesWidth(const QFontMetrics& metrics, const QStringList& badges) {
    int width = 0;
    for (const QString& badge : badges) {
        width += badgeGap + badgeWidth(metrics, badge);
    }
    return width;
}

} // namespace

void AppNameDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString name = item.text;
    const QStringList badges = index.data(AppTableModel::badgesRole).toStringList();
    const QWidget* widget = option.widget;
    QStyle* style = widget != nullptr ? widget->style() : QApplication::style();
    const QRect iconArea = style->subElementRect(QStyle::SE_ItemViewItemDecoration, &item, widget);
    const QRect textArea =
        style->subElementRect(QStyle::SE_ItemViewItemText, &item, widget).adjusted(2, 0, 0, 0);
    // The style draws the row's ground and selection; the icon keeps its own colours on a
    // selected row, and the name and the badges are ours.
    const QIcon icon = item.icon;
    item.text.clear();
    item.icon = QIcon();
    item.features &= ~QStyleOptionViewItem::HasDecoration;
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);
    icon.paint(painter, iconArea);
    const bool selected = option.state & QStyle::State_Selected;
    const QPalette& palette = option.palette;
    const QFontMetrics nameMetrics(option.font);
    const QFont smaller = badgeFont(option.font);
    const QFontMetrics badgeMetrics(smaller);
    const int nameRoom = std::max(0, textArea.width() - badgesWidth(badgeMetrics, badges));
    const QString shownName = nameMetrics.elidedText(name, Qt::ElideRight, nameRoom);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setFont(option.font);
    painter->setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(textArea, Qt::AlignLeft | Qt::AlignVCenter, shownName);

    int left = textArea.left() + nameMetrics.horizontalAdvance(shownName);
    painter->setFont(smaller);
    const int height = badgeMetrics.height() + 2;
    const int top = textArea.center().y() - height / 2 + 1;
    for (const QString& badge : badges) {
        left += badgeGap;
        const QRect box(left, top, badgeWidth(badgeMetrics, badge), height);
        if (box.right() > textArea.right()) {
            break;
        }
        const QColor ink =
            selected ? palette.color(QPalette::HighlightedText) : Style::secondaryText(palette);
        QPainterPath outline;
        outline.addRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), height / 2.0,
                               height / 2.0);
        painter->fillPath(outline, Style::faded(ink, 0.14));
        painter->setPen(ink);
        painter->drawText(box, Qt::AlignCenter, badge);
        left = box.right() + 1;
    }
    painter->restore();
}

QSize AppNameDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    const QStringList badges = index.data(AppTableModel::badgesRole).toStringList();
    size.rwidth() += badgesWidth(QFontMetrics(badgeFont(option.font)), badges);
    return size;
}

} // namespace dorvik
