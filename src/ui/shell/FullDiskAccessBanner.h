#pragma once

// Asks for Full Disk Access under a scan prompt while the program lacks it.

#include <QFrame>

namespace dorvik {

class AppState;

class FullDiskAccessBanner : public QFrame {
public:
    explicit FullDiskAccessBanner(AppState& state, QWidget* parent = nullptr);
};

} // namespace dorvik
