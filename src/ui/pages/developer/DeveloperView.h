#pragma once

// The Developer page: folders that tools make again, found in the scan by name, beside the items
// of the developer junk rules, cleaned through the plan "Clean Developer Artifacts"; under them
// the card of the virtual machines' disks. Without a scan the rules' items still show, with a
// hint to scan for the projects' own.

#include "ui/pages/Page.h"

#include <vector>

class QLabel;
class QMenu;
class QStackedLayout;
class QTableView;

namespace dorvik {

class AppState;
class DevItemModel;
class SelectionBar;
class VirtualDisksCard;
struct DevItem;

class DeveloperView : public Page {
public:
    explicit DeveloperView(AppState& state, QWidget* parent = nullptr);

    // The parts, for the tests.
    QTableView* table() const { return table_; }
    DevItemModel* model() const { return model_; }
    QWidget* scanHint() const { return hint_; }
    QLabel* emptyNote() const { return emptyNote_; }
    SelectionBar* selectionBar() const { return bar_; }
    VirtualDisksCard* disksCard() const { return disks_; }

    std::vector<DevItem> selectedItems() const;
    // The items a right click at `row` concerns: the selection if the row is in it, else the row.
    std::vector<DevItem> itemsForMenuAt(int row) const;
    // The menu of a right click on those items.
    QMenu* makeMenu(const std::vector<DevItem>& items);

protected:
    // The rules' items are searched when the page first shows.
    void showEvent(QShowEvent* event) override;

private:
    QTableView* makeTable();
    QWidget* makeHint();
    void refresh();
    void selectionChanged();

    AppState& state_;
    DevItemModel* model_;
    QTableView* table_;
    QWidget* hint_;
    QLabel* emptyNote_;
    QStackedLayout* listStack_;
    SelectionBar* bar_;
    QLabel* footnote_;
    VirtualDisksCard* disks_;
};

} // namespace dorvik
