#pragma once

// The look shared by every page: the spacing, the colours and the roles of text. Colours come
// from the palette in force, so a change of appearance redraws everything without a page
// knowing; the few fixed colours are given as "#RRGGBB".

#include <QColor>
#include <QPalette>
#include <QString>

#include <string_view>

class QAbstractButton;
class QLabel;
class QWidget;

namespace dorvik::Style {

// Spacing, in pixels.
inline constexpr int gap = 8;           // between related controls
inline constexpr int smallGap = 4;      // between the lines of one block
inline constexpr int sectionGap = 16;   // between blocks of a page
inline constexpr int pageMargin = 24;   // around a page's content
inline constexpr int cardPadding = 14;  // inside a card
inline constexpr int cardRadius = 10;   // corners of cards, banners and sheets
inline constexpr int rowRadius = 6;     // corners of selected rows
inline constexpr int smallIcon = 16;    // icons in rows and buttons
inline constexpr int headlineIcon = 28; // icons that lead a banner or card
inline constexpr int badgeIcon = 64;    // the large badge of prompts and sheets

// A colour written as "#RRGGBB".
QColor hex(std::string_view rgb);

bool isDark(const QPalette& palette);

// Colours that take their part from the palette in force.
QColor secondaryText(const QPalette& palette);
QColor tertiaryText(const QPalette& palette);
QColor accent(const QPalette& palette);
QColor warning(const QPalette& palette);
QColor positive(const QPalette& palette);
QColor danger(const QPalette& palette);
QColor separator(const QPalette& palette);
QColor card(const QPalette& palette);
// The colours symbols and marks are drawn in, by what they say.
enum class Tint { text, secondary, accent, warning, positive, danger };
QColor tint(Tint tint, const QPalette& palette);

// `colour` at `opacity`, to lie over whatever is under it.
QColor faded(const QColor& colour, double opacity);

// What a piece of text is for; it sets the font and the colour.
enum class TextRole {
    body,
    pageTitle,       // the title of a page
    headline,        // the heading of a card, banner or sheet
    secondary,       // explanations under a title
    tertiary,        // paths and other detail
    caption,         // small secondary text
    captionTertiary, // small tertiary text
};

void setTextRole(QWidget* widget, TextRole role);
QLabel* label(const QString& text, TextRole role, QWidget* parent = nullptr);

// The button that carries a page's or a sheet's main action, drawn in the accent colour.
void setProminent(QAbstractButton* button, bool prominent);

// A button whose action removes something, its text in the danger colour.
void setDestructive(QAbstractButton* button);

// Where a button stands in a row of buttons drawn as one control; `menu` is the narrow last
// button that opens a menu.
enum class Segment { first, middle, last, menu };
void setSegment(QAbstractButton* button, Segment segment);

// A frame drawn as a card: a rounded, slightly raised area of the page.
void makeCard(QWidget* widget);

// The stylesheet of the whole application for `palette`.
QString styleSheet(const QPalette& palette);

} // namespace dorvik::Style
