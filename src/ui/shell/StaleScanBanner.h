#pragma once

// Says that the scan on show is old, with a button to scan again. The Overview page shows it
// while the scan is stale.

#include <QFrame>

class QLabel;
class QPushButton;

namespace dorvik {

class AppState;

class StaleScanBanner : public QFrame {
public:
    explicit StaleScanBanner(AppState& state, QWidget* parent = nullptr);

    // `date`: when the scan finished, in seconds since 1970; `now` likewise.
    void setDate(double date, double now);

    QLabel* headline() const { return headline_; }
    QPushButton* rescanButton() const { return rescan_; }

private:
    AppState& state_;
    QLabel* headline_;
    QPushButton* rescan_;
};

} // namespace dorvik
