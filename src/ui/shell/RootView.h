#pragma once

// The main window: the sidebar of sections at the left, the page of the section at the right,
// and what every page shares: the banner slot above the pages, the toast under them, the sheets
// over everything, and the window's menus.

#include "removal/Toast.h"
#include "state/AppSection.h"

#include <QMainWindow>
#include <QPointer>

class QMenu;
class QSplitter;
class QStackedWidget;

namespace dorvik {

class AppState;
class AppearanceController;
class SettingsView;
class SheetOverlay;
class Sidebar;
class ToastView;

inline constexpr QSize rootViewMinimumSize{1040, 680};

class RootView : public QMainWindow {
public:
    // A toast stays `toastLifetime` unless closed or replaced; tests shorten it.
    RootView(AppState& state, AppearanceController& appearance,
             std::chrono::milliseconds toastLifetime = toastDuration, QWidget* parent = nullptr);

    Sidebar* sidebar() const { return sidebar_; }
    QWidget* page(AppSection section) const;
    QWidget* currentPage() const;
    SheetOverlay* sheets() const { return sheets_; }
    ToastView* toast() const { return toast_; }
    QMenu* scanMenu() const { return scanMenu_; }
    // Where the removed-app banner stands, above the pages.
    QWidget* bannerSlot() const { return bannerSlot_; }

private:
    QWidget* makeContent(std::chrono::milliseconds toastLifetime);
    void makeMenus();
    void showSettings();
    void showSection();
    void refreshSheets();

    AppState& state_;
    AppearanceController& appearance_;
    QSplitter* split_;
    Sidebar* sidebar_;
    QWidget* bannerSlot_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    SheetOverlay* sheets_;
    ToastView* toast_ = nullptr;
    QMenu* scanMenu_ = nullptr;
    QPointer<SettingsView> settings_;
};

} // namespace dorvik
