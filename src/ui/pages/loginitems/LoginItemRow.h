#pragma once

// One login item on its page: the owner's icon, or a gear when no owner is known; its name, and
// what it is or runs under it; its badges; and its actions.

#include "system/LaunchItem.h"

#include <QWidget>

#include <functional>

class QPushButton;

namespace dorvik {

class ElidedLabel;

class LoginItemRow : public QWidget {
public:
    // `reveal` and `remove` are what the two buttons do; Apple's own items and the entries that
    // stand in for a system one get no remove button. `busy` disables it.
    LoginItemRow(const LaunchItem& item, bool busy, std::function<void()> reveal,
                 std::function<void()> remove, QWidget* parent = nullptr);

    const LaunchItem& item() const { return item_; }
    // The badges' words, in the order shown.
    QStringList badges() const { return badges_; }
    QPushButton* removeButton() const { return remove_; }
    QPushButton* revealButton() const { return reveal_; }
    ElidedLabel* nameLabel() const { return name_; }

private:
    LaunchItem item_;
    QStringList badges_;
    ElidedLabel* name_ = nullptr;
    QPushButton* reveal_ = nullptr;
    QPushButton* remove_ = nullptr;
};

} // namespace dorvik
