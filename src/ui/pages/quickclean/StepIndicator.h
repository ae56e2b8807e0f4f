#pragma once

// Where a Quick Clean run stands: "Scan", "Review" and "Clean", the current one lit.

#include <QWidget>

#include <optional>

class QLabel;

namespace dorvik {

class StepIndicator : public QWidget {
public:
    explicit StepIndicator(QWidget* parent = nullptr);

    // 0 for "Scan", 1 for "Review", 2 for "Clean"; none lights nothing.
    void setCurrent(std::optional<int> step);
    std::optional<int> current() const { return current_; }

    static constexpr int stepCount = 3;

protected:
    // The colours follow a change of appearance.
    void changeEvent(QEvent* event) override;

private:
    std::optional<int> current_;
    QLabel* dots_[stepCount];
    QLabel* names_[stepCount];
};

} // namespace dorvik
