#pragma once

// The short message at the foot of the window after a removal or an undo, with "Undo" when
// something went to the Trash. Each toast stays for its own full time unless it is closed or
// replaced; the timer of a replaced toast leaves the newer one alone.

#include "removal/Toast.h"

#include <QFrame>
#include <QPropertyAnimation>

#include <chrono>

class QLabel;
class QPushButton;
class QToolButton;

namespace dorvik {

class AppState;
class SymbolView;

class ToastView : public QFrame {
public:
    ToastView(AppState& state, std::chrono::milliseconds lifetime, QWidget* parent);

    QLabel* message() const { return message_; }
    QLabel* detail() const { return detail_; }
    QPushButton* undoButton() const { return undo_; }
    SymbolView* symbol() const { return symbol_; }
    QToolButton* closeButton() const { return close_; }

    // Keeps the toast at the foot of its parent, in the middle, 20 pixels above the edge.
    void place();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    QPoint restingPlace() const;
    QPoint hiddenPlace() const;

    AppState& state_;
    std::chrono::milliseconds lifetime_;
    std::string shownId_;
    QLabel* message_;
    SymbolView* symbol_ = nullptr;
    QLabel* detail_;
    QPushButton* undo_;
    QToolButton* close_;
    QPropertyAnimation slide_;
};

} // namespace dorvik
