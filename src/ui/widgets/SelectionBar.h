#pragma once

// The bar under a list that allows a selection: how much is selected, and what to do with it.
// What the buttons do is up to the page.

#include <QFrame>

#include <cstdint>
#include <functional>

class QLabel;
class QPushButton;

namespace dorvik {

class SelectionBar : public QFrame {
public:
    SelectionBar(const QString& actionTitle, QWidget* parent = nullptr);

    // Hidden with a count under 1.
    void setSelection(int64_t count, int64_t size);
    // A second button, shown only with a title.
    void setSecondary(const QString& title, const QString& help);

    std::function<void()> onClear;
    std::function<void()> onSecondary;
    std::function<void()> onAction;

    QLabel* summary() const { return summary_; }
    QPushButton* secondaryButton() const { return secondary_; }
    QPushButton* actionButton() const { return action_; }

private:
    QLabel* summary_;
    QPushButton* secondary_;
    QPushButton* action_;
};

} // namespace dorvik
