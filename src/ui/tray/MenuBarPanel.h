#pragma once

// The tray's panel: the disk as a ring with what is free, the forecast of when it fills up, what
// the scheduled clean last did, what a removed application left behind, and the ways into Quick
// Clean and the main window. A row whose data is missing is left out. Opening it reads the disk
// afresh.

#include <QFrame>

#include <cstdint>
#include <functional>

class QLabel;
class QPushButton;

namespace dorvik {

class AppState;
class SymbolView;
class UsageRing;

inline constexpr int menuBarPanelWidth = 290;
inline constexpr int menuBarRingDiameter = 54;

class MenuBarPanel : public QFrame {
public:
    // `openWindow` brings the main window up and to the front.
    MenuBarPanel(AppState& state, std::function<void()> openWindow, QWidget* parent = nullptr);

    // The button for an application that left files behind; wired to the removed-app report.
    void showRemovedApp(const QString& name, int64_t leftBytes);
    void hideRemovedApp();
    // Shows the application last reported gone, or hides the row when there is none.
    void refreshRemovedApp();

    QWidget* volumeRow() const { return volumeRow_; }
    UsageRing* ring() const { return ring_; }
    QLabel* volumeName() const { return volumeName_; }
    QLabel* freeLine() const { return freeLine_; }
    QLabel* purgeableLine() const { return purgeableLine_; }
    QWidget* forecastRow() const { return forecastRow_; }
    QLabel* forecastTitle() const { return forecastTitle_; }
    QLabel* forecastDetail() const { return forecastDetail_; }
    QPushButton* openTrendsButton() const { return openTrends_; }
    QWidget* autoCleanRow() const { return autoCleanRow_; }
    QLabel* autoCleanLine() const { return autoCleanLine_; }
    QPushButton* removedAppButton() const { return removedApp_; }
    QPushButton* quickCleanButton() const { return quickClean_; }
    QPushButton* openDorvikButton() const { return openDorvik_; }
    QPushButton* quitButton() const { return quit_; }

    void refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeVolumeRow();
    QWidget* makeForecastRow();
    QWidget* makeAutoCleanRow();
    void refreshVolume();
    void refreshForecast();
    void refreshAutoClean();
    // Runs `action`, then puts the panel away.
    void act(const std::function<void()>& action);

    AppState& state_;
    std::function<void()> openWindow_;
    QWidget* volumeRow_ = nullptr;
    UsageRing* ring_ = nullptr;
    QLabel* volumeName_ = nullptr;
    QLabel* freeLine_ = nullptr;
    QLabel* purgeableLine_ = nullptr;
    QWidget* forecastRow_ = nullptr;
    SymbolView* forecastSymbol_ = nullptr;
    QLabel* forecastTitle_ = nullptr;
    QLabel* forecastDetail_ = nullptr;
    QPushButton* openTrends_ = nullptr;
    QWidget* autoCleanRow_ = nullptr;
    QLabel* autoCleanLine_ = nullptr;
    QPushButton* removedApp_ = nullptr;
    QPushButton* quickClean_ = nullptr;
    QPushButton* openDorvik_ = nullptr;
    QPushButton* quit_ = nullptr;
};

} // namespace dorvik
