#include "ui/pages/types/KindTile.h"

#include "base/TextForms.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QPainter>
#include <QPainterPath>

namespace dorvik {

namespace {

constexpr int tileIconSize = 28;

} // namespace

KindTile::KindTile(FileKind kind, int64_t bytes, int64_t files, QWidget* parent)
    : QAbstractButton(parent), kind_(kind), sizeText_(qtText(TextForms::size(bytes))),
      countText_(filesText(files)) {
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setText(shownText(info(kind).displayName));
    setAccessibleName(text());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize KindTile::sizeHint() const {
    const QFontMetrics metrics(font());
    return {160, Style::cardPadding * 2 + tileIconSize + Style::gap + metrics.height() * 3 + 4};
}

void KindTile::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colours = palette();
    const QColor kindColour = Style::hex(info(kind_).colour);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(isChecked() ? QPen(kindColour, 2) : QPen(Style::separator(colours), 1));
    painter.setBrush(isChecked() || underMouse() ? Style::faded(kindColour, 0.12)
                                                 : Style::card(colours));
    painter.drawRoundedRect(frame, Style::cardRadius, Style::cardRadius);

    const int left = Style::cardPadding;
    int top = Style::cardPadding;
    Symbols::icon(info(kind_).symbol, kindColour)
        .paint(&painter, QRect(left, top, tileIconSize, tileIconSize));
    top += tileIconSize + Style::gap;

    const int width = rect().width() - 2 * left;
    QFont titleFont = font();
    titleFont.setWeight(QFont::DemiBold);
    const QFontMetrics titleMetrics(titleFont);
    painter.setFont(titleFont);
    painter.setPen(colours.color(QPalette::Text));
    painter.drawText(QRect(left, top, width, titleMetrics.height()), Qt::AlignLeft,
                     titleMetrics.elidedText(text(), Qt::ElideRight, width));
    top += titleMetrics.height() + 2;

    const QFontMetrics metrics(font());
    painter.setFont(font());
    painter.drawText(QRect(left, top, width, metrics.height()), Qt::AlignLeft, sizeText_);
    top += metrics.height() + 2;
    painter.setPen(Style::secondaryText(colours));
    painter.drawText(QRect(left, top, width, metrics.height()), Qt::AlignLeft, countText_);
}

} // namespace dorvik
