#pragma once

// The History page: what could not be removed in the last operation, and the log of everything
// removed, with "Restore" for what still lies in the Trash.

#include "ui/pages/Page.h"

class QTableView;
class QVBoxLayout;

namespace dorvik {

class AppState;
class HistoryModel;

class HistoryView : public Page {
public:
    explicit HistoryView(AppState& state, QWidget* parent = nullptr);

    QTableView* table() const { return table_; }
    HistoryModel* model() const { return model_; }
    // The card of the last operation's failures; hidden when there are none.
    QWidget* failuresCard() const { return failuresCard_; }

private:
    QTableView* makeTable();
    void refreshFailures();

    AppState& state_;
    HistoryModel* model_;
    QTableView* table_;
    QWidget* failuresCard_;
    QVBoxLayout* failureRows_;
};

} // namespace dorvik
