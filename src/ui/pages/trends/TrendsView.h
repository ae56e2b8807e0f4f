#pragma once

// "Trends": when the disk would fill up at the current pace, and what grew since an earlier
// scan. Everything is read afresh from the trend store and the state whenever either changes.

#include "ui/pages/Page.h"

namespace dorvik {

class AppState;
class ChangesCard;
class ForecastCardView;

class TrendsView : public Page {
public:
    explicit TrendsView(AppState& state, QWidget* parent = nullptr);

    ForecastCardView* forecast() const { return forecast_; }
    ChangesCard* changes() const { return changes_; }

    // Reads the store and the state now.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    // Once the current turn of the event loop is over: a finished scan records its snapshot
    // and sample after it announces the scan.
    void refreshSoon();

    AppState& state_;
    ForecastCardView* forecast_;
    ChangesCard* changes_;
    bool refreshPending_ = false;
};

} // namespace dorvik
