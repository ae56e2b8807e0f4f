#include "ui/widgets/SymbolView.h"

#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QPainter>

namespace dorvik {

SymbolView::SymbolView(std::string_view symbol, int size, QWidget* parent)
    : QWidget(parent), symbol_(symbol), size_(size) {
    setFixedSize(size, size);
}

void SymbolView::setSymbol(std::string_view symbol) {
    symbol_ = symbol;
    update();
}

void SymbolView::setTint(Style::Tint tint) {
    tint_ = tint;
    colour_ = QColor();
    update();
}

void SymbolView::setColour(const QColor& colour) {
    colour_ = colour;
    update();
}

void SymbolView::setBadge(bool badge) {
    badge_ = badge;
    update();
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = colour_.isValid() ? colour_ : Style::tint(tint_, palette());
    if (badge_) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Style::faded(colour, 0.16));
        painter.drawEllipse(rect());
        const int inner = size_ / 2;
        const QRect symbolRect((size_ - inner) / 2, (size_ - inner) / 2, inner, inner);
        Symbols::icon(symbol_, colour).paint(&painter, symbolRect);
        return;
    }
    Symbols::icon(symbol_, colour)
        .paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

} // namespace dorvik
