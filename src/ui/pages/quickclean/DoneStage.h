#pragma once

// Quick Clean after a run: what it freed, what waits in the Trash, what it had to leave, and how
// much is free now.

#include <QWidget>

class QLabel;
class QPushButton;

namespace dorvik {

class AppState;

class DoneStage : public QWidget {
public:
    explicit DoneStage(AppState& state, QWidget* parent = nullptr);

    QLabel* headline() const { return headline_; }
    QLabel* trashLine() const { return trash_; }
    QLabel* leftOverLine() const { return leftOver_; }
    QLabel* freeSpaceLine() const { return freeSpace_; }

private:
    void refresh();

    AppState& state_;
    QLabel* headline_;
    QLabel* trash_;
    QLabel* leftOver_;
    QLabel* freeSpace_;
};

} // namespace dorvik
