#pragma once

// Says that an application was removed and left data behind, above every page, while the state
// holds such a report: "Not Now" puts it away, "Review and Remove…" turns what it left into a
// plan.

#include <QWidget>

class QLabel;
class QPushButton;

namespace dorvik {

class AppState;
struct RemovedApp;

class RemovedAppBanner : public QWidget {
public:
    explicit RemovedAppBanner(AppState& state, QWidget* parent = nullptr);

    QLabel* headline() const { return headline_; }
    QLabel* caption() const { return caption_; }
    QPushButton* notNowButton() const { return notNow_; }
    QPushButton* reviewButton() const { return review_; }

private:
    void follow();

    AppState& state_;
    QLabel* headline_;
    QLabel* caption_;
    QPushButton* notNow_;
    QPushButton* review_;
};

// "<name> was removed, but left <size> behind".
QString removedAppHeadline(const RemovedApp& removed);
// The distinct labels of the items, sorted and joined by " · ".
QString removedAppLocations(const RemovedApp& removed);

} // namespace dorvik
