#pragma once

// Light, dark, or whatever the desktop is: the "appearance" setting and how it is applied to
// the whole application.

#include "state/SettingsState.h"

#include <QObject>
#include <QPalette>
#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace dorvik {

enum class AppAppearance { system, light, dark };

inline constexpr std::array<AppAppearance, 3> allAppAppearances = {
    AppAppearance::system, AppAppearance::light, AppAppearance::dark};

struct AppAppearanceInfo {
    std::string_view rawValue;
    std::string_view label;
};

const AppAppearanceInfo& info(AppAppearance appearance);

// Anything but "light" or "dark", the empty string included, follows the system.
AppAppearance appAppearanceFromRaw(const QString& rawValue);

// The palette of an appearance. `system` takes light or dark after the desktop's own palette.
QPalette appearancePalette(AppAppearance appearance, const QPalette& desktopPalette);

// Reads and writes the setting and keeps the application dressed after it.
class AppearanceController : public QObject {
    Q_OBJECT

public:
    // `desktopPalette` is the palette the desktop gave the application before any of ours.
    explicit AppearanceController(QPalette desktopPalette, QObject* parent = nullptr);

    AppAppearance appearance() const;
    // Stores the choice and applies it at once.
    void setAppearance(AppAppearance appearance);
    // Applies the stored choice, or `override` where one is given (a screenshot's).
    void apply(std::optional<AppAppearance> override = std::nullopt) const;

signals:
    void appearanceChanged();

private:
    QPalette desktopPalette_;
    SettingsState settings_;
};

} // namespace dorvik
