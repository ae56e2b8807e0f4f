#pragma once

// A thin rounded bar that shows a share, filled in a tint of the palette.

#include "ui/Style.h"

#include <QWidget>

namespace dorvik {

class UsageBar : public QWidget {
public:
    explicit UsageBar(QWidget* parent = nullptr);

    // From 0 to 1; anything outside is held to the ends.
    void setShare(double share);
    double share() const { return share_; }
    void setTint(Style::Tint tint);
    Style::Tint tint() const { return tint_; }

    QSize sizeHint() const override { return {120, height_}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr int height_ = 6;
    double share_ = 0;
    Style::Tint tint_ = Style::Tint::accent;
};

} // namespace dorvik
