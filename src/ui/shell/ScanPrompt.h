#pragma once

// What a page shows in place of its content while it has no scan: the last scan loading, the
// scan running, or an invitation to scan.

#include <QWidget>

class QLabel;
class QStackedLayout;

namespace dorvik {

class AppState;
class ElidedLabel;
class ScanningRing;

class ScanPrompt : public QWidget {
public:
    ScanPrompt(AppState& state, const QString& title, const QString& message,
               QWidget* parent = nullptr);

    enum class Showing { restoring, scanning, invitation };
    Showing showing() const;

private:
    QWidget* makeRestoring();
    QWidget* makeScanning();
    QWidget* makeInvitation(const QString& title, const QString& message);
    void refresh();

    AppState& state_;
    QStackedLayout* stack_;
    ScanningRing* ring_ = nullptr;
    ElidedLabel* currentPath_ = nullptr;
    QWidget* accessBanner_ = nullptr;
};

} // namespace dorvik
