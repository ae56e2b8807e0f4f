#pragma once

// The scan controls at the top of the pages that work from a scan: the progress and "Stop" while
// a scan runs, otherwise the button that starts one, with its menu of targets.

#include <QTimer>
#include <QWidget>

class QLabel;
class QMenu;
class QPushButton;
class QStackedLayout;

namespace dorvik {

class AppState;
class ElidedLabel;

class ScanToolbar : public QWidget {
public:
    explicit ScanToolbar(AppState& state, QWidget* parent = nullptr);

    // The parts, for the tests.
    QPushButton* scanButton() const { return scanButton_; }
    QMenu* scanMenu() const { return scanMenu_; }
    QPushButton* stopButton() const { return stopButton_; }
    QLabel* progressLine() const { return progressLine_; }
    ElidedLabel* currentPath() const { return currentPath_; }
    bool showsProgress() const;

private:
    QWidget* makeProgress();
    QWidget* makeScanButton();
    void chooseFolder();
    void refresh();

    AppState& state_;
    QStackedLayout* stack_;
    QLabel* progressLine_ = nullptr;
    ElidedLabel* currentPath_ = nullptr;
    QPushButton* stopButton_ = nullptr;
    QPushButton* scanButton_ = nullptr;
    QPushButton* menuButton_ = nullptr;
    QMenu* scanMenu_ = nullptr;
    // A scan goes stale while the program is open; the button looks again now and then.
    QTimer staleCheck_;
};

} // namespace dorvik
