#include "ui/widgets/UsageBar.h"

#include <QPainter>

#include <algorithm>

namespace dorvik {

UsageBar::UsageBar(QWidget* parent) : QWidget(parent) {
    setFixedHeight(height_);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void UsageBar::setShare(double share) {
    share_ = std::clamp(share, 0.0, 1.0);
    update();
}

void UsageBar::setTint(Style::Tint tint) {
    tint_ = tint;
    update();
}

void UsageBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const qreal radius = height() / 2.0;
    painter.setBrush(Style::separator(palette()));
    painter.drawRoundedRect(rect(), radius, radius);
    if (share_ <= 0) {
        return;
    }
    QRectF filled = rect();
    filled.setWidth(std::max(static_cast<qreal>(height()), width() * share_));
    painter.setBrush(Style::tint(tint_, palette()));
    painter.drawRoundedRect(filled, radius, radius);
}

} // namespace dorvik
