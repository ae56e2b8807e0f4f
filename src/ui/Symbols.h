#pragma once

// The program names its icons by symbol ("sparkles", "trash.fill"). On Linux each symbol is an
// icon of the freedesktop icon theme, drawn in one colour like the text beside it; this file
// holds the one table from symbol to theme icon.

#include "ui/Style.h"

#include <QColor>
#include <QIcon>
#include <QString>

#include <span>
#include <string_view>

namespace dorvik::Symbols {

struct SymbolIcon {
    std::string_view symbol;
    std::string_view themeIcon;
};

// Every symbol the program shows, with its theme icon.
std::span<const SymbolIcon> table();

// The theme icon of `symbol`; empty for a symbol that is not in the table.
QString themeIconName(std::string_view symbol);

// The icon theme the table's names come from, and where to look for it. Called once at start,
// before any icon is made.
void useIconTheme();

// `symbol` drawn in the palette's colour for `tint` at the moment it is drawn, so that it follows
// a change of appearance. Selected, it takes the highlighted text colour; disabled, the disabled
// text colour.
QIcon icon(std::string_view symbol, Style::Tint tint = Style::Tint::text);
// The same in a fixed colour.
QIcon icon(std::string_view symbol, const QColor& colour);

} // namespace dorvik::Symbols
