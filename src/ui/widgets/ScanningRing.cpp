#include "ui/widgets/ScanningRing.h"

#include "ui/Style.h"

#include <QPainter>

namespace dorvik {

namespace {

constexpr int turnMilliseconds = 1100;
constexpr int arcDegrees = 90;

} // namespace

ScanningRing::ScanningRing(int diameter, QWidget* parent) : QWidget(parent), diameter_(diameter) {
    setFixedSize(diameter, diameter);
    turn_.setStartValue(0.0);
    turn_.setEndValue(360.0);
    turn_.setDuration(turnMilliseconds);
    turn_.setLoopCount(-1);
    turn_.setEasingCurve(QEasingCurve::Linear);
    connect(&turn_, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

void ScanningRing::setProgressText(const QString& text) {
    progressText_ = text;
    update();
}

void ScanningRing::setDetail(const QString& detail) {
    detail_ = detail;
    update();
}

bool ScanningRing::isSpinning() const {
    return turn_.state() == QAbstractAnimation::Running;
}

void ScanningRing::showEvent(QShowEvent*) {
    turn_.start();
}

void ScanningRing::hideEvent(QHideEvent*) {
    turn_.stop();
}

void ScanningRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal line = std::max(3.0, diameter_ / 18.0);
    const QRectF ring = QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2);

    painter.setPen(QPen(Style::separator(palette()), line));
    painter.drawEllipse(ring);
    QPen arc(Style::accent(palette()), line);
    arc.setCapStyle(Qt::RoundCap);
    painter.setPen(arc);
    // Qt counts angles anticlockwise in sixteenths of a degree; the arc turns clockwise.
    const double angle = turn_.currentValue().toDouble();
    painter.drawArc(ring, static_cast<int>((90 - angle) * 16), -arcDegrees * 16);

    if (progressText_.isEmpty() && detail_.isEmpty()) {
        return;
    }
    QFont big = font();
    big.setPointSizeF(font().pointSizeF() * 1.35);
    big.setWeight(QFont::DemiBold);
    QFont small = font();
    small.setPointSizeF(font().pointSizeF() * 0.85);
    const int bigHeight = QFontMetrics(big).height();
    const int smallHeight = QFontMetrics(small).height();
    const int top = (height() - bigHeight - smallHeight) / 2;
    painter.setFont(big);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(0, top, width(), bigHeight), Qt::AlignCenter, progressText_);
    painter.setFont(small);
    painter.setPen(Style::secondaryText(palette()));
    painter.drawText(QRect(0, top + bigHeight, width(), smallHeight), Qt::AlignCenter, detail_);
}

} // namespace dorvik
