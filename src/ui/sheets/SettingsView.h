#pragma once

// The settings window. Its General tab holds the appearance and the way things are removed; the
// tabs of the background services come with them.

#include <QWidget>

class QAbstractButton;
class QCheckBox;

namespace dorvik {

class AppState;
class AppearanceController;
class SegmentedControl;

inline constexpr QSize settingsViewSize{580, 460};

class SettingsView : public QWidget {
public:
    SettingsView(AppState& state, AppearanceController& appearance, QWidget* parent = nullptr);

    QAbstractButton* appearanceButton(int index) const;
    QCheckBox* permanentDeleteBox() const { return permanentDelete_; }

private:
    QWidget* makeGeneralTab();

    AppState& state_;
    AppearanceController& appearance_;
    SegmentedControl* appearancePicker_ = nullptr;
    QCheckBox* permanentDelete_ = nullptr;
};

} // namespace dorvik
