#pragma once

// The settings window: General (appearance, removal, access, login, tray, watcher), Automation
// (the scheduled clean and the low-space warning) and Exclusions (folders never scanned). Every
// control reads and writes the stored settings through AppState's one accessor, or through the
// background services for the switches they follow.

#include <QWidget>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QTabWidget;
class QToolButton;

namespace dorvik {

class AppState;
class AppearanceController;
class SegmentedControl;

inline constexpr QSize settingsViewSize{580, 460};

// The choices of the low-space warning, in gigabytes; 0 is "Never".
inline constexpr int lowSpaceChoices[] = {0, 5, 10, 20, 50};

class SettingsView : public QWidget {
public:
    SettingsView(AppState& state, AppearanceController& appearance, QWidget* parent = nullptr);

    QTabWidget* tabs() const { return tabs_; }
    QAbstractButton* appearanceButton(int index) const;
    QCheckBox* permanentDeleteBox() const { return permanentDelete_; }
    QWidget* fullDiskAccessRow() const { return fullDiskAccess_; }
    QCheckBox* launchAtLoginBox() const { return launchAtLogin_; }
    QCheckBox* menuBarBox() const { return menuBar_; }
    QCheckBox* watchRemovedAppsBox() const { return watchRemovedApps_; }
    QComboBox* schedulePicker() const { return schedule_; }
    QLabel* lastRunLabel() const { return lastRun_; }
    QPushButton* runNowButton() const { return runNow_; }
    QComboBox* lowSpacePicker() const { return lowSpace_; }
    QListWidget* exclusionList() const { return exclusions_; }
    QToolButton* addExclusionButton() const { return addExclusion_; }
    QToolButton* removeExclusionButton() const { return removeExclusion_; }

    // What "plus" does with the folder the user chose: its canonical path goes last in the list.
    void addExclusion(const QString& chosenFolder);
    // What "minus" does: every line equal to the selected path goes.
    void removeSelectedExclusion();

private:
    QWidget* makeGeneralTab();
    QWidget* makeAutomationTab();
    QWidget* makeExclusionsTab();
    void refreshGeneral();
    void refreshAutomation();
    void refreshExclusions();
    void chooseExclusion();

    AppState& state_;
    AppearanceController& appearance_;
    QTabWidget* tabs_ = nullptr;
    SegmentedControl* appearancePicker_ = nullptr;
    QCheckBox* permanentDelete_ = nullptr;
    QWidget* fullDiskAccess_ = nullptr;
    QCheckBox* launchAtLogin_ = nullptr;
    QCheckBox* menuBar_ = nullptr;
    QCheckBox* watchRemovedApps_ = nullptr;
    QComboBox* schedule_ = nullptr;
    QWidget* lastRunRow_ = nullptr;
    QLabel* lastRun_ = nullptr;
    QPushButton* runNow_ = nullptr;
    QComboBox* lowSpace_ = nullptr;
    QListWidget* exclusions_ = nullptr;
    QToolButton* addExclusion_ = nullptr;
    QToolButton* removeExclusion_ = nullptr;
};

} // namespace dorvik
