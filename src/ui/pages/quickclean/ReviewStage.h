#pragma once

// Quick Clean's confirmation: the junk found, by group, each rule with a tick that keeps it in
// the clean or leaves it out, and the sum of what the ticked rules would free.

#include <QWidget>

#include <map>
#include <string>

class QCheckBox;
class QLabel;
class QPushButton;
class QStackedLayout;
class QVBoxLayout;

namespace dorvik {

class AppState;

class ReviewStage : public QWidget {
public:
    explicit ReviewStage(AppState& state, QWidget* parent = nullptr);

    QLabel* sum() const { return sum_; }
    QPushButton* cleanButton() const { return clean_; }
    // The tick of each rule listed, by rule id.
    const std::map<std::string, QCheckBox*>& ruleCheckBoxes() const { return checks_; }
    // Whether the page says that nothing was found.
    bool showsClean() const;

private:
    void rebuild();
    void refreshSelection();

    AppState& state_;
    QStackedLayout* stack_;
    QWidget* nothingFound_;
    QWidget* found_;
    QVBoxLayout* groups_;
    std::map<std::string, QCheckBox*> checks_;
    QLabel* sum_;
    QPushButton* clean_;
};

} // namespace dorvik
