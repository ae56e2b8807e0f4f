#pragma once

// The Duplicates page: "Find Duplicates" searches the last scan; the groups of identical files
// follow, oldest file first and marked "Suggested original". The selection of copies goes to the
// Trash through the removal plan, or is kept and made to share its storage with the original.

#include "reclaim/DuplicateSelection.h"
#include "ui/pages/ScanPage.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace dorvik {

class SelectionBar;

class DuplicatesView : public ScanPage {
public:
    explicit DuplicatesView(AppState& state, QWidget* parent = nullptr);

    QPushButton* findButton() const { return find_; }
    QTreeWidget* tree() const { return tree_; }
    SelectionBar* selectionBar() const { return bar_; }
    // The "Sharing space…" layer over the list.
    QWidget* sharingOverlay() const { return overlay_; }
    const DuplicateSelection& selection() const { return selection_; }
    void setSelection(DuplicateSelection selection);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeProgressView();
    QWidget* makeEmptyView();
    QWidget* makeListView();
    void placeOverlay();
    void refresh();
    void refreshProgress();
    void refreshSelection();
    void fillTree();
    void itemChanged(QTreeWidgetItem* item);
    void showMenu(const QPoint& position);

    QPushButton* find_;
    QStackedWidget* views_;
    QProgressBar* progress_ = nullptr;
    QWidget* listView_ = nullptr;
    QWidget* emptyView_ = nullptr;
    QWidget* progressView_ = nullptr;
    QLabel* summary_ = nullptr;
    QTreeWidget* tree_ = nullptr;
    QWidget* overlay_ = nullptr;
    SelectionBar* bar_ = nullptr;
    DuplicateSelection selection_;
    bool filling_ = false;
};

} // namespace dorvik
