#pragma once

// One part of what the system keeps for itself: its icon, title, size and share of the parts'
// sum, what it is, what to do about it, its risk, and a button that shows it in the file
// manager.

#include "system/SystemData.h"

#include <QWidget>

#include <functional>

class QAbstractButton;

namespace dorvik {

class SystemDataRow : public QWidget {
public:
    // `reveal` shows the part's path; it is called only for a part that has one.
    SystemDataRow(const SystemDataPart& part, int64_t sum,
                  std::function<void(const std::string&)> reveal, QWidget* parent = nullptr);

    // None for a part without a path.
    QAbstractButton* revealButton() const { return revealButton_; }

private:
    QAbstractButton* revealButton_ = nullptr;
};

} // namespace dorvik
