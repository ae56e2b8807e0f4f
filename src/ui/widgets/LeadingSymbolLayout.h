#pragma once

// The arrangement that banners, cards, rows and the toast share: a symbol at the left, and at
// its right a column of lines; more widgets (buttons) may follow the column in the row.

class QHBoxLayout;
class QVBoxLayout;
class QWidget;

namespace dorvik {

struct LeadingSymbolLayout {
    QHBoxLayout* row;    // the owner's layout: the symbol, then the column
    QVBoxLayout* column; // where the lines go
};

// Lays `owner` out with `symbol` at its top left, `margin` around everything and `spacing`
// between the symbol and the column.
LeadingSymbolLayout layOutWithLeadingSymbol(QWidget* owner, QWidget* symbol, int margin,
                                            int spacing);

} // namespace dorvik
