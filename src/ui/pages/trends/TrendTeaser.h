#pragma once

// The Overview's invitation to the Trends page: how the total changed since the scan before this
// one. Hidden while the scan's root has fewer than two snapshots.

#include <QFrame>

class QLabel;

namespace dorvik {

class AppState;

class TrendTeaser : public QFrame {
public:
    explicit TrendTeaser(AppState& state, QWidget* parent = nullptr);

    void refresh(double now);
    QLabel* text() const { return text_; }
    // Goes to the Trends page.
    void press();

private:
    AppState& state_;
    QLabel* text_;
};

} // namespace dorvik
