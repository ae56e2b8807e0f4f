#pragma once

// Quick Clean before a run: how full the disk is, what the clean promises, and "Scan".

#include <QWidget>

class QLabel;
class QPushButton;

namespace dorvik {

class AppState;
class UsageRing;

class IdleStage : public QWidget {
public:
    explicit IdleStage(AppState& state, QWidget* parent = nullptr);

    QPushButton* scanButton() const { return scan_; }
    UsageRing* ring() const { return ring_; }
    QLabel* message() const { return message_; }

private:
    void refreshVolume();

    AppState& state_;
    UsageRing* ring_;
    QLabel* message_;
    QPushButton* scan_;
};

} // namespace dorvik
