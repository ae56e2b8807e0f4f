#pragma once

// A symbol drawn at a fixed size, optionally on a round badge. It is drawn anew on each paint,
// so it follows a change of appearance.

#include "ui/Style.h"

#include <QColor>
#include <QIcon>
#include <QWidget>

#include <string_view>

namespace dorvik {

class SymbolView : public QWidget {
public:
    SymbolView(std::string_view symbol, int size, QWidget* parent = nullptr);

    void setSymbol(std::string_view symbol);
    // The colour of the symbol, by its meaning (read from the palette on each paint) or fixed.
    void setTint(Style::Tint tint);
    void setColour(const QColor& colour);
    // Draws a round badge of the colour, faded, behind a symbol of half the size.
    void setBadge(bool badge);

    QSize sizeHint() const override { return {size_, size_}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::string symbol_;
    int size_;
    Style::Tint tint_ = Style::Tint::text;
    QColor colour_; // when set, instead of the tint

    bool badge_ = false;
};

} // namespace dorvik
