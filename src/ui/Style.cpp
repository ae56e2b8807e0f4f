#include "ui/Style.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QStyle>

#include <array>

namespace dorvik::Style {

namespace {

struct RoleFont {
    TextRole role;
    const char* name; // the value of the "textRole" property the stylesheet matches
    double scale;     // of the application's font size
    QFont::Weight weight;
};

constexpr std::array<RoleFont, 7> roleFonts = {{
    {TextRole::body, "body", 1.0, QFont::Normal},
    {TextRole::pageTitle, "pageTitle", 1.75, QFont::Bold},
    {TextRole::headline, "headline", 1.15, QFont::DemiBold},
    {TextRole::secondary, "secondary", 1.0, QFont::Normal},
    {TextRole::tertiary, "tertiary", 1.0, QFont::Normal},
    {TextRole::caption, "caption", 0.85, QFont::Normal},
    {TextRole::captionTertiary, "captionTertiary", 0.85, QFont::Normal},
}};

const RoleFont& roleFont(TextRole role) {
    return roleFonts[static_cast<size_t>(role)];
}

QString css(const QColor& colour) {
    return colour.name(colour.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
}

void repolish(QWidget* widget) {
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
    widget->update();
}

} // namespace

QColor hex(std::string_view rgb) {
    return QColor(QString::fromLatin1(rgb.data(), static_cast<qsizetype>(rgb.size())));
}

bool isDark(const QPalette& palette) {
    // A widget whose stylesheet makes its background transparent gets a transparent black
    // window colour, which says nothing about the appearance; its text colour still does.
    const QColor window = palette.color(QPalette::Window);
    if (window.alpha() < 128) {
        return palette.color(QPalette::WindowText).lightness() >= 128;
    }
    return window.lightness() < 128;
}

QColor secondaryText(const QPalette& palette) {
    return palette.color(QPalette::PlaceholderText);
}

QColor tertiaryText(const QPalette& palette) {
    QColor colour = palette.color(QPalette::PlaceholderText);
    colour.setAlphaF(0.7f);
    return colour;
}

QColor accent(const QPalette& palette) {
    return palette.color(QPalette::Highlight);
}

QColor warning(const QPalette& palette) {
    return isDark(palette) ? hex("#FF9F0A") : hex("#E08600");
}

QColor positive(const QPalette& palette) {
    return isDark(palette) ? hex("#30D158") : hex("#1E9E42");
}

QColor danger(const QPalette& palette) {
    return isDark(palette) ? hex("#FF453A") : hex("#E0352B");
}

QColor separator(const QPalette& palette) {
    return isDark(palette) ? hex("#3A3A3E") : hex("#DCDCE0");
}

QColor card(const QPalette& palette) {
    return palette.color(QPalette::AlternateBase);
}

QColor tint(Tint tint, const QPalette& palette) {
    switch (tint) {
    case Tint::text:
        return palette.color(QPalette::WindowText);
    case Tint::secondary:
        return secondaryText(palette);
    case Tint::accent:
        return accent(palette);
    case Tint::warning:
        return warning(palette);
    case Tint::positive:
        return positive(palette);
    case Tint::danger:
        return danger(palette);
    }
    return palette.color(QPalette::WindowText);
}

QColor faded(const QColor& colour, double opacity) {
    QColor result = colour;
    result.setAlphaF(static_cast<float>(opacity));
    return result;
}

void setTextRole(QWidget* widget, TextRole role) {
    const RoleFont& roleStyle = roleFont(role);
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * roleStyle.scale);
    font.setWeight(roleStyle.weight);
    widget->setFont(font);
    widget->setProperty("textRole", QString::fromLatin1(roleStyle.name));
    repolish(widget);
}

QLabel* label(const QString& text, TextRole role, QWidget* parent) {
    auto* result = new QLabel(text, parent);
    result->setTextFormat(Qt::PlainText);
    setTextRole(result, role);
    return result;
}

void setSegment(QAbstractButton* button, Segment segment) {
    static constexpr std::array<const char*, 4> names = {"first", "middle", "last", "menu"};
    button->setProperty("segment", QString::fromLatin1(names[static_cast<size_t>(segment)]));
    repolish(button);
}

void setProminent(QAbstractButton* button, bool prominent) {
    if (button->property("prominent").toBool() != prominent) {
        button->setProperty("prominent", prominent);
        repolish(button);
    }
}

void setDestructive(QAbstractButton* button) {
    button->setProperty("destructive", true);
    repolish(button);
}

void makeCard(QWidget* widget) {
    widget->setProperty("card", true);
    widget->setAttribute(Qt::WA_StyledBackground, true);
    repolish(widget);
}

QString styleSheet(const QPalette& palette) {
    const QColor accentColour = accent(palette);
    const QColor base = palette.color(QPalette::Base);
    const QColor window = palette.color(QPalette::Window);
    QString sheet;
    sheet += QStringLiteral("QWidget[page=\"true\"] { background: %1; }\n").arg(css(base));
    sheet += QStringLiteral("QWidget[sidebar=\"true\"] { background: %1; }\n").arg(css(window));
    sheet += QStringLiteral("*[textRole=\"secondary\"], *[textRole=\"caption\"] { color: %1; }\n")
                 .arg(css(secondaryText(palette)));
    sheet +=
        QStringLiteral("*[textRole=\"tertiary\"], *[textRole=\"captionTertiary\"] { color: %1; }\n")
            .arg(css(tertiaryText(palette)));
    sheet += QStringLiteral("*[card=\"true\"] { background: %1; border: 1px solid %2;"
                            " border-radius: %3px; }\n")
                 .arg(css(card(palette)), css(separator(palette)))
                 .arg(cardRadius);
    sheet += QStringLiteral("*[card=\"true\"] QLabel { background: transparent; border: none; }\n");
    const QColor button = palette.color(QPalette::Button);
    const QColor border = isDark(palette) ? hex("#4A4A4F") : hex("#C8C8CD");
    sheet += QStringLiteral("QPushButton { background: %1; color: %2; border: 1px solid %3;"
                            " border-radius: 6px; padding: 4px 14px; min-height: 18px; }\n")
                 .arg(css(button), css(palette.color(QPalette::ButtonText)), css(border));
    sheet +=
        QStringLiteral("QLineEdit { background: %1; color: %2; border: 1px solid %3;"
                       " border-radius: 6px; padding: 3px 4px; min-height: 18px; }\n"
                       "QLineEdit:focus { border-color: %4; }\n")
            .arg(css(base), css(palette.color(QPalette::Text)), css(border), css(accentColour));
    sheet += QStringLiteral("QPushButton:hover { background: %1; }\n")
                 .arg(css(isDark(palette) ? button.lighter(115) : button.darker(104)));
    sheet += QStringLiteral("QPushButton:pressed, QPushButton:checked { background: %1; }\n")
                 .arg(css(isDark(palette) ? button.lighter(135) : button.darker(112)));
    sheet += QStringLiteral("QPushButton:disabled { color: %1; }\n")
                 .arg(css(palette.color(QPalette::Disabled, QPalette::ButtonText)));
    sheet += QStringLiteral("QPushButton:focus { border-color: %1; }\n").arg(css(accentColour));
    sheet += QStringLiteral("QPushButton[prominent=\"true\"] { background: %1; color: %2;"
                            " border-color: %3; }\n")
                 .arg(css(accentColour), css(palette.color(QPalette::HighlightedText)),
                      css(accentColour.darker(115)));
    sheet += QStringLiteral("QPushButton[prominent=\"true\"]:hover { background: %1; }\n")
                 .arg(css(accentColour.lighter(108)));
    sheet += QStringLiteral("QPushButton[prominent=\"true\"]:pressed { background: %1; }\n")
                 .arg(css(accentColour.darker(120)));
    sheet += QStringLiteral("QPushButton[prominent=\"true\"]:disabled {"
                            " background: %1; border-color: %1; color: %2; }\n")
                 .arg(css(faded(accentColour, 0.35)), css(base));
    sheet += QStringLiteral("QPushButton[destructive=\"true\"] { color: %1; }\n")
                 .arg(css(danger(palette)));
    sheet += QStringLiteral("QPushButton[destructive=\"true\"]:disabled { color: %1; }\n")
                 .arg(css(palette.color(QPalette::Disabled, QPalette::ButtonText)));
    // The filter toggles of a page lie on the page's own ground, where the style's box would be
    // drawn in that very colour in the dark appearance: they draw their box themselves.
    sheet += QStringLiteral("QCheckBox[filterToggle=\"true\"]::indicator { width: 12px;"
                            " height: 12px; border: 1px solid %1; border-radius: 3px;"
                            " background: %2; }\n"
                            "QCheckBox[filterToggle=\"true\"]::indicator:checked {"
                            " border-color: %3; background: %3; }\n")
                 .arg(css(tertiaryText(palette)), css(base), css(accentColour));
    // Buttons joined side by side, as one control.
    sheet +=
        QStringLiteral("QPushButton[segment=\"first\"] { border-top-right-radius: 0;"
                       " border-bottom-right-radius: 0; }\n"
                       "QPushButton[segment=\"middle\"] { border-radius: 0; border-left: none; }\n"
                       "QPushButton[segment=\"last\"] { border-top-left-radius: 0;"
                       " border-bottom-left-radius: 0; border-left: none; }\n"
                       "QPushButton[segment=\"menu\"] { border-top-left-radius: 0;"
                       " border-bottom-left-radius: 0; padding: 4px 8px; }\n"
                       "QPushButton[segment=\"menu\"]::menu-indicator {"
                       " subcontrol-position: center; subcontrol-origin: padding; }\n");
    sheet +=
        QStringLiteral("QPushButton:checked { background: %1; color: %2; border-color: %3; }\n")
            .arg(css(accentColour), css(palette.color(QPalette::HighlightedText)),
                 css(accentColour.darker(115)));
    sheet += QStringLiteral("QTableView { background: %1; alternate-background-color: %2;"
                            " selection-background-color: %3; selection-color: %4; }\n")
                 .arg(css(base), css(card(palette)), css(accentColour),
                      css(palette.color(QPalette::HighlightedText)));
    sheet += QStringLiteral(
                 "QHeaderView { background: %1; border: none; }\n"
                 "QHeaderView::section { background: %1; color: %2; border: none;"
                 " border-bottom: 1px solid %3; padding: 5px 16px 5px 3px; font-weight: 600; }\n")
                 .arg(css(base), css(secondaryText(palette)), css(separator(palette)));
    sheet += QStringLiteral("QFrame[separator=\"true\"] { background: %1; border: none; }\n")
                 .arg(css(separator(palette)));
    sheet += QStringLiteral("QSplitter::handle { background: %1; }\n").arg(css(separator(palette)));
    sheet += QStringLiteral("QScrollArea[page=\"true\"] > QWidget#qt_scrollarea_viewport > QWidget "
                            "{ background: %1; }\n")
                 .arg(css(base));
    // A page that scrolls as a whole: a thin bar with a rounded handle, no arrows.
    sheet +=
        QStringLiteral("QScrollArea[page=\"true\"] QScrollBar:vertical { background: transparent;"
                       " width: 10px; margin: 0; border: none; }\n"
                       "QScrollArea[page=\"true\"] QScrollBar::handle:vertical { background: %1;"
                       " border-radius: 3px; min-height: 32px; margin: 2px; }\n"
                       "QScrollArea[page=\"true\"] QScrollBar::add-line:vertical,"
                       " QScrollArea[page=\"true\"] QScrollBar::sub-line:vertical { height: 0; }\n"
                       "QScrollArea[page=\"true\"] QScrollBar::add-page:vertical,"
                       " QScrollArea[page=\"true\"] QScrollBar::sub-page:vertical {"
                       " background: transparent; }\n")
            .arg(css(faded(secondaryText(palette), 0.5)));
    return sheet;
}

} // namespace dorvik::Style
