#include "ui/widgets/ElidedLabel.h"

#include <QPainter>

namespace dorvik {

ElidedLabel::ElidedLabel(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ElidedLabel::setText(const QString& text) {
    if (text_ != text) {
        text_ = text;
        setToolTip(text);
        updateGeometry();
        update();
    }
}

void ElidedLabel::setAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    update();
}

QSize ElidedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text_), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // The stylesheet's colour for the text role arrives through the palette's WindowText.
    painter.setPen(palette().color(QPalette::WindowText));
    const QString shown = fontMetrics().elidedText(text_, Qt::ElideMiddle, width());
    painter.drawText(rect(), Qt::AlignVCenter | Qt::TextDontClip | alignment_, shown);
}

} // namespace dorvik
