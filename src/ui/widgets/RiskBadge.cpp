#include "ui/widgets/RiskBadge.h"

#include "ui/QtText.h"
#include "ui/Symbols.h"

#include <QPainter>

namespace dorvik {

namespace {

constexpr int symbolSize = 12;
constexpr int padding = 6;
constexpr int inner = 4; // between symbol and label

QFont badgeFont(const QFont& font) {
    QFont result = font;
    result.setPointSizeF(font.pointSizeF() * 0.85);
    result.setWeight(QFont::DemiBold);
    return result;
}

} // namespace

Style::Tint riskTint(Risk risk) {
    switch (risk) {
    case Risk::safe:
        return Style::Tint::positive;
    case Risk::review:
        return Style::Tint::warning;
    case Risk::protected_:
        return Style::Tint::secondary;
    }
    return Style::Tint::secondary;
}

QSize riskBadgeSize(Risk risk, bool compact, const QFont& font) {
    const QFontMetrics metrics(badgeFont(font));
    const int height = std::max(symbolSize, metrics.height()) + 4;
    if (compact) {
        return {symbolSize + 2 * padding, height};
    }
    return {padding + symbolSize + inner + metrics.horizontalAdvance(shownText(info(risk).label)) +
                padding,
            height};
}

int paintRiskBadge(QPainter& painter, int left, int centreY, Risk risk, bool compact,
                   const QFont& font, const QPalette& palette) {
    const QSize size = riskBadgeSize(risk, compact, font);
    const QRect capsule(left, centreY - size.height() / 2, size.width(), size.height());
    const QColor colour = Style::tint(riskTint(risk), palette);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Style::faded(colour, 0.16));
    painter.drawRoundedRect(capsule, size.height() / 2.0, size.height() / 2.0);
    const QRect symbol(left + padding, centreY - symbolSize / 2, symbolSize, symbolSize);
    Symbols::icon(info(risk).symbol, colour).paint(&painter, symbol);
    if (!compact) {
        painter.setFont(badgeFont(font));
        painter.setPen(colour);
        const QRect text(symbol.right() + 1 + inner, capsule.top(),
                         capsule.right() - symbol.right() - inner, capsule.height());
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, shownText(info(risk).label));
    }
    painter.restore();
    return size.width();
}

RiskBadge::RiskBadge(Risk risk, bool compact, QWidget* parent)
    : QWidget(parent), risk_(risk), compact_(compact) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize RiskBadge::sizeHint() const {
    return riskBadgeSize(risk_, compact_, font());
}

void RiskBadge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintRiskBadge(painter, 0, height() / 2, risk_, compact_, font(), palette());
}

} // namespace dorvik
