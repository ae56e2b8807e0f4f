#pragma once

// Where the explorer stands: a back button, the names from the scanned root down to the open
// folder, and a button that shows that folder in the file manager. A name pressed goes back up
// to it.

#include <QWidget>

class QHBoxLayout;
class QToolButton;

namespace dorvik {

class AppState;

class Breadcrumbs : public QWidget {
public:
    explicit Breadcrumbs(AppState& state, QWidget* parent = nullptr);

    QToolButton* backButton() const { return back_; }
    // The buttons of the names, root first.
    const QList<QToolButton*>& crumbs() const { return crumbs_; }

private:
    void rebuild();

    AppState& state_;
    QToolButton* back_;
    QToolButton* reveal_;
    QHBoxLayout* trail_;
    QList<QToolButton*> crumbs_;
};

} // namespace dorvik
