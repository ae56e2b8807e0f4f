#pragma once

// The sheet that asks for Full Disk Access before a whole-disk or home scan, and lets the user go
// on without it.

#include <QDialog>

class QPushButton;

namespace dorvik {

class AppState;

inline constexpr int accessOnboardingWidth = 540;

class AccessOnboardingView : public QDialog {
public:
    explicit AccessOnboardingView(AppState& state, QWidget* parent = nullptr);

    QPushButton* scanWithoutAccessButton() const { return scanWithoutAccess_; }

    // Escape closes the sheet without scanning.
    void reject() override;

private:
    AppState& state_;
    QPushButton* scanWithoutAccess_;
};

} // namespace dorvik
