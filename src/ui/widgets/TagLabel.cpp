#include "ui/widgets/TagLabel.h"

#include <QPainter>

namespace dorvik {

namespace {

constexpr int padding = 7;

} // namespace

TagLabel::TagLabel(const QString& text, Style::Tint tint, QWidget* parent)
    : QWidget(parent), text_(text), tint_(tint) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QFont TagLabel::tagFont() const {
    QFont result = font();
    result.setPointSizeF(font().pointSizeF() * 0.85);
    result.setWeight(QFont::DemiBold);
    return result;
}

QSize TagLabel::sizeHint() const {
    const QFontMetrics metrics(tagFont());
    return {metrics.horizontalAdvance(text_) + 2 * padding, metrics.height() + 4};
}

void TagLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = Style::tint(tint_, palette());
    const QRect capsule = rect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Style::faded(colour, 0.16));
    painter.drawRoundedRect(capsule, capsule.height() / 2.0, capsule.height() / 2.0);
    painter.setFont(tagFont());
    painter.setPen(colour);
    painter.drawText(capsule, Qt::AlignCenter, text_);
}

} // namespace dorvik
