#pragma once

// The cards of the Overview under its header: the disk's figures, what to do first, and the
// largest folders.

#include "cleaning/Recommendations.h"
#include "scanning/FileNode.h"

#include <QFrame>

#include <vector>

class QLabel;
class QVBoxLayout;

namespace dorvik {

class AppState;
class RowButton;
class StatTile;

// "Used", "Free", "Purgeable" (only where the volume knows it) and "Scanned".
class StatsRow : public QWidget {
public:
    explicit StatsRow(AppState& state, QWidget* parent = nullptr);

    void refresh();
    // The tiles shown, in order.
    std::vector<StatTile*> tiles() const;

private:
    AppState& state_;
    StatTile* used_;
    StatTile* free_;
    StatTile* purgeable_;
    StatTile* scanned_;
};

class RecommendationsCard : public QFrame {
public:
    explicit RecommendationsCard(AppState& state, QWidget* parent = nullptr);

    void refresh(double now);
    const std::vector<Recommendation>& shown() const { return shown_; }
    const std::vector<RowButton*>& rows() const { return rows_; }
    QLabel* nothing() const { return nothing_; }

private:
    AppState& state_;
    QVBoxLayout* list_;
    QLabel* nothing_;
    std::vector<Recommendation> shown_;
    std::vector<RowButton*> rows_;
};

class BiggestFoldersCard : public QFrame {
public:
    explicit BiggestFoldersCard(AppState& state, QWidget* parent = nullptr);

    void refresh();
    const std::vector<FileNodePtr>& folders() const { return folders_; }
    const std::vector<RowButton*>& rows() const { return rows_; }

private:
    AppState& state_;
    QVBoxLayout* list_;
    std::vector<FileNodePtr> folders_;
    std::vector<RowButton*> rows_;
};

} // namespace dorvik
