#pragma once

// "What changed": the newest scan of a root against an earlier one the user picks, as the change
// of the total, the storage buckets that moved and the folders that explain it. Each folder row
// opens its folder in the explorer, or in the file manager when the scan does not hold it.

#include "trends/SnapshotChanges.h"

#include <QFrame>

#include <optional>
#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace dorvik {

class AppState;
class RowButton;

class ChangesCard : public QFrame {
public:
    explicit ChangesCard(AppState& state, QWidget* parent = nullptr);

    // Reads the history again and shows it.
    void refresh(double now);

    // The earlier scan compared with: none for the second newest.
    void setBaseline(std::optional<std::string> id);

    QLabel* message() const { return message_; }
    QPushButton* scanButton() const { return scanButton_; }
    QToolButton* baselineMenu() const { return baselineMenu_; }
    const std::vector<RowButton*>& rows() const { return rows_; }
    const std::vector<FolderChange>& changes() const { return changes_; }

private:
    void showComparison(const std::vector<ScanSnapshot>& history, double now);
    void addChips(const std::vector<BucketChange>& changes);
    RowButton* makeRow(const FolderChange& change, int64_t largest);
    void openFolder(const std::string& path);

    AppState& state_;
    std::optional<std::string> baselineId_;
    double now_ = 0;
    QToolButton* baselineMenu_;
    QLabel* message_;
    QPushButton* scanButton_;
    QWidget* comparison_;
    QLabel* summary_;
    QWidget* chipStrip_; // scrolls sideways
    QWidget* chips_;
    QVBoxLayout* list_;
    std::vector<RowButton*> rows_;
    std::vector<FolderChange> changes_;
};

} // namespace dorvik
