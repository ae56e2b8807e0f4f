#include "ui/Appearance.h"

#include "ui/Style.h"

#include <QApplication>

namespace dorvik {

namespace {

constexpr std::array<AppAppearanceInfo, 3> appearanceInfos = {{
    {"system", "System"},
    {"light", "Light"},
    {"dark", "Dark"},
}};

struct PaletteColours {
    const char* window;
    const char* base;
    const char* alternateBase;
    const char* text;
    const char* secondaryText;
    const char* button;
    const char* accent;
    const char* disabledText;
    const char* light;
    const char* mid;
    const char* dark;
    const char* toolTip;
};

constexpr PaletteColours lightColours = {"#EEEEF0", "#FFFFFF", "#F5F5F7", "#1D1D1F",
                                         "#6E6E73", "#FBFBFD", "#0A6CDA", "#A1A1A6",
                                         "#FFFFFF", "#C7C7CC", "#8E8E93", "#FFFFF0"};
constexpr PaletteColours darkColours = {"#232326", "#1B1B1D", "#2A2A2D", "#EDEDF0",
                                        "#9A9AA0", "#36363A", "#0A84FF", "#5E5E63",
                                        "#48484C", "#2C2C30", "#141416", "#36363A"};

QPalette paletteOf(const PaletteColours& colours) {
    using Style::hex;
    QPalette palette;
    palette.setColor(QPalette::Window, hex(colours.window));
    palette.setColor(QPalette::WindowText, hex(colours.text));
    palette.setColor(QPalette::Base, hex(colours.base));
    palette.setColor(QPalette::AlternateBase, hex(colours.alternateBase));
    palette.setColor(QPalette::Text, hex(colours.text));
    palette.setColor(QPalette::PlaceholderText, hex(colours.secondaryText));
    palette.setColor(QPalette::Button, hex(colours.button));
    palette.setColor(QPalette::ButtonText, hex(colours.text));
    palette.setColor(QPalette::BrightText, hex("#FFFFFF"));
    palette.setColor(QPalette::Highlight, hex(colours.accent));
    palette.setColor(QPalette::HighlightedText, hex("#FFFFFF"));
    palette.setColor(QPalette::Link, hex(colours.accent));
    palette.setColor(QPalette::Light, hex(colours.light));
    palette.setColor(QPalette::Midlight, hex(colours.light));
    palette.setColor(QPalette::Mid, hex(colours.mid));
    palette.setColor(QPalette::Dark, hex(colours.dark));
    palette.setColor(QPalette::Shadow, hex("#000000"));
    palette.setColor(QPalette::ToolTipBase, hex(colours.toolTip));
    palette.setColor(QPalette::ToolTipText, hex(colours.text));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, hex(colours.disabledText));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, hex(colours.mid));
    return palette;
}

} // namespace

const AppAppearanceInfo& info(AppAppearance appearance) {
    return appearanceInfos[static_cast<size_t>(appearance)];
}

AppAppearance appAppearanceFromRaw(const QString& rawValue) {
    for (AppAppearance appearance : allAppAppearances) {
        if (rawValue.toStdString() == info(appearance).rawValue) {
            return appearance;
        }
    }
    return AppAppearance::system;
}

QPalette appearancePalette(AppAppearance appearance, const QPalette& desktopPalette) {
    const bool dark = appearance == AppAppearance::dark ||
                      (appearance == AppAppearance::system && Style::isDark(desktopPalette));
    return paletteOf(dark ? darkColours : lightColours);
}

AppearanceController::AppearanceController(QPalette desktopPalette, QObject* parent)
    : QObject(parent), desktopPalette_(std::move(desktopPalette)) {}

AppAppearance AppearanceController::appearance() const {
    return appAppearanceFromRaw(settings_.appearance());
}

void AppearanceController::setAppearance(AppAppearance appearance) {
    settings_.setAppearance(QString::fromLatin1(info(appearance).rawValue));
    apply();
    emit appearanceChanged();
}

void AppearanceController::apply(std::optional<AppAppearance> override) const {
    const QPalette palette = appearancePalette(override.value_or(appearance()), desktopPalette_);
    QApplication::setPalette(palette);
    qApp->setStyleSheet(Style::styleSheet(palette));
}

} // namespace dorvik
