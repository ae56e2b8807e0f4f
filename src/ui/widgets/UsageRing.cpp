#include "ui/widgets/UsageRing.h"

#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QPainter>

#include <algorithm>

namespace dorvik {

UsageRing::UsageRing(int diameter, std::string_view symbol, QWidget* parent)
    : QWidget(parent), diameter_(diameter), symbol_(symbol) {
    setFixedSize(diameter, diameter);
}

void UsageRing::setShare(double share) {
    share_ = std::clamp(share, 0.0, 1.0);
    update();
}

void UsageRing::setCentreText(const QString& text) {
    centreText_ = text;
    update();
}

void UsageRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal line = std::max(4.0, diameter_ / 14.0);
    const QRectF ring = QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2);
    painter.setPen(QPen(Style::separator(palette()), line));
    painter.drawEllipse(ring);
    if (share_ > 0) {
        QPen arc(Style::accent(palette()), line);
        arc.setCapStyle(Qt::RoundCap);
        painter.setPen(arc);
        // Qt counts angles anticlockwise in sixteenths of a degree, from three o'clock.
        painter.drawArc(ring, 90 * 16, -static_cast<int>(share_ * 360 * 16));
    }
    if (!centreText_.isEmpty()) {
        QFont font = painter.font();
        font.setBold(true);
        font.setPixelSize(std::max(9, diameter_ / 4));
        painter.setFont(font);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect(), Qt::AlignCenter, centreText_);
        return;
    }
    const int symbolSize = diameter_ * 2 / 5;
    const QRect centre((width() - symbolSize) / 2, (height() - symbolSize) / 2, symbolSize,
                       symbolSize);
    Symbols::icon(symbol_, Style::Tint::accent).paint(&painter, centre);
}

} // namespace dorvik
