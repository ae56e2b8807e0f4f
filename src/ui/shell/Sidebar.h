#pragma once

// The list of sections at the left of the window, in its groups, bound to AppState's section;
// the disk footer stands under it.

#include "state/AppSection.h"

#include <QWidget>

class QListWidget;

namespace dorvik {

class AppState;

class Sidebar : public QWidget {
public:
    explicit Sidebar(AppState& state, QWidget* parent = nullptr);

    QListWidget* list() const { return list_; }

    // What a row of the list holds, under this role: the section's index, or -1 for a heading.
    static constexpr int sectionRole = Qt::UserRole + 1;

private:
    void showSection();

    AppState& state_;
    QListWidget* list_;
};

} // namespace dorvik
