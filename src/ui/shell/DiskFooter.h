#pragma once

// The start-up disk at the foot of the sidebar: its name, what is free, and a bar of what is
// used.

#include "system/VolumeInfo.h"

#include <QWidget>

class QLabel;

namespace dorvik {

class AppState;
class UsageBar;

// The bar takes the warning colour when less than a tenth of the disk is free.
bool isLowOnSpace(const VolumeInfo& volume);

class DiskFooter : public QWidget {
public:
    explicit DiskFooter(AppState& state, QWidget* parent = nullptr);

    QLabel* nameLabel() const { return name_; }
    QLabel* freeLabel() const { return free_; }
    UsageBar* usedBar() const { return used_; }

private:
    void refresh();

    AppState& state_;
    QLabel* name_;
    QLabel* free_;
    UsageBar* used_;
};

} // namespace dorvik
