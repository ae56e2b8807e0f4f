#pragma once

// The small mark of a risk: its symbol and, unless compact, its label, in the risk's colour on a
// pale capsule. Lists draw it with paintRiskBadge; elsewhere it is a widget.

#include "catalogue/Risk.h"
#include "ui/Style.h"

#include <QWidget>

namespace dorvik {

Style::Tint riskTint(Risk risk);

// Draws the badge with its left edge at `left` and centred on `centreY`; returns its width.
int paintRiskBadge(QPainter& painter, int left, int centreY, Risk risk, bool compact,
                   const QFont& font, const QPalette& palette);
// The width and height paintRiskBadge takes.
QSize riskBadgeSize(Risk risk, bool compact, const QFont& font);

class RiskBadge : public QWidget {
public:
    explicit RiskBadge(Risk risk, bool compact = false, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Risk risk_;
    bool compact_;
};

} // namespace dorvik
