#pragma once

// Dorvik in the desktop's tray: an icon (a StatusNotifierItem on current desktops) whose tooltip
// tells the free space, and the panel that opens when it is activated. With "menuBar" off, or
// without a tray on the desktop, there is no icon. While the icon stands, closing the main window
// leaves Dorvik running; "Quit" ends it.

#include "system/VolumeInfo.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <string_view>

class QMenu;
class QSystemTrayIcon;

namespace dorvik {

class AppState;
class MenuBarPanel;

struct TrayLabel {
    std::string_view symbol;
    QString text; // empty without a reading
};

// The bare drive without a reading; with one, the free space (negative as zero) beside the
// drive, or beside the warning sign when space is low by the low-space test.
TrayLabel trayLabel(const std::optional<VolumeInfo>& volume, int lowSpaceGB);

class TrayPresence : public QObject {
public:
    TrayPresence(AppState& state, std::function<void()> openWindow, QObject* parent = nullptr);
    ~TrayPresence() override;

    // Whether the icon stands in the tray now.
    bool isShown() const;
    MenuBarPanel* panel() const { return panel_; }
    QSystemTrayIcon* icon() const { return icon_; }

    // Opens the panel beside the icon, or under the pointer when the tray does not say where the
    // icon is.
    void openPanel();

private:
    void refresh();

    AppState& state_;
    QSystemTrayIcon* icon_;
    QMenu* menu_;
    MenuBarPanel* panel_;
};

} // namespace dorvik
