#pragma once

// "Overview", the first page of analysis. Before a scan it invites one; after a scan it says how
// full the disk is, where the space went and what to do first.

#include "ui/pages/ScanPage.h"

class QLabel;

namespace dorvik {

class BiggestFoldersCard;
class CompositionCard;
class RecommendationsCard;
class StatsRow;
class TrendTeaser;

class OverviewView : public ScanPage {
public:
    explicit OverviewView(AppState& state, QWidget* parent = nullptr);

    QLabel* restoredNote() const { return restoredNote_; }
    StatsRow* stats() const { return stats_; }
    TrendTeaser* teaser() const { return teaser_; }
    CompositionCard* composition() const { return composition_; }
    RecommendationsCard* recommendations() const { return recommendations_; }
    BiggestFoldersCard* biggestFolders() const { return biggestFolders_; }

    // Reads the state now.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    // Once the current turn of the event loop is over, so that a burst of changes (a scan's end
    // announces the scan, then the volume, then the trends) redraws the page once.
    void refreshSoon();

    QLabel* restoredNote_;
    StatsRow* stats_;
    TrendTeaser* teaser_;
    CompositionCard* composition_;
    RecommendationsCard* recommendations_;
    BiggestFoldersCard* biggestFolders_;
    bool refreshPending_ = false;
};

} // namespace dorvik
