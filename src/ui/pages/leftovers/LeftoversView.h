#pragma once

// The App Leftovers page: data in ~/Library named after applications that are no longer
// installed, searched when the page first shows, filtered by a search field, and deleted through
// the plan "Delete App Leftovers".

#include "ui/pages/Page.h"

#include <functional>
#include <vector>

class QLabel;
class QLineEdit;
class QMenu;
class QStackedLayout;
class QTableView;

namespace dorvik {

class AppState;
class LeftoverModel;
class SelectionBar;
struct Leftover;

class LeftoversView : public Page {
public:
    explicit LeftoversView(AppState& state, QWidget* parent = nullptr);

    // The parts, for the tests.
    QTableView* table() const { return table_; }
    LeftoverModel* model() const { return model_; }
    QLineEdit* searchField() const { return search_; }
    QWidget* note() const { return note_; }
    QLabel* statusText() const { return status_; }
    SelectionBar* selectionBar() const { return bar_; }

    std::vector<Leftover> selectedLeftovers() const;
    // The leftovers a right click at `row` concerns: the selection if the row is in it, else the
    // row.
    std::vector<Leftover> leftoversForMenuAt(int row) const;
    QMenu* makeMenu(const std::vector<Leftover>& leftovers);

protected:
    // The search runs when the page first shows.
    void showEvent(QShowEvent* event) override;

private:
    QTableView* makeTable();
    QWidget* makeNote();
    // Runs a change of the model's rows, and keeps selected the rows that still show.
    void changeRows(const std::function<void()>& change);
    void showRows();
    void refresh();
    void selectionChanged();

    AppState& state_;
    LeftoverModel* model_;
    QTableView* table_;
    QWidget* note_;
    QLineEdit* search_;
    QLabel* status_;
    QStackedLayout* stack_;
    SelectionBar* bar_;
};

} // namespace dorvik
