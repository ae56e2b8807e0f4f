#pragma once

// One rule on the Junk page: a checkbox that switches all its items, its title and explanation,
// how many items it found and their size, what happens to them, and the list of its items, open
// on demand. What is selected is the page's; the row shows it and reports clicks.

#include "cleaning/JunkFinding.h"

#include <QFrame>

#include <functional>
#include <set>
#include <string>
#include <vector>

class QCheckBox;
class QPushButton;
class QVBoxLayout;

namespace dorvik {

class AppState;

class JunkRuleRow : public QFrame {
public:
    JunkRuleRow(AppState& state, JunkFinding finding, QWidget* parent = nullptr);

    const JunkFinding& finding() const { return finding_; }
    // Ticks the rule when all its items are in `selected`, and each item that is.
    void showSelection(const std::set<std::string>& selected);
    // Opens or closes the list of items; the items' rows are made the first time it opens.
    void setExpanded(bool expanded);
    bool isExpanded() const;

    // The user ticked or unticked these items (all of them, for the rule's checkbox).
    std::function<void(const std::vector<std::string>& ids, bool selected)> onSelect;
    std::function<void(bool expanded)> onExpand;

    QCheckBox* ruleCheckBox() const { return ruleCheck_; }
    QPushButton* expandButton() const { return expand_; }
    // The checkboxes of the items listed, in list order; empty until first expanded.
    const std::vector<QCheckBox*>& itemCheckBoxes() const { return itemChecks_; }

private:
    QWidget* makeItemRow(const JunkItem& item);
    void fillItems();

    AppState& state_;
    JunkFinding finding_;
    QCheckBox* ruleCheck_;
    QPushButton* expand_;
    QWidget* items_;
    QVBoxLayout* itemRows_;
    std::vector<QCheckBox*> itemChecks_;
    std::set<std::string> shownSelection_;
};

} // namespace dorvik
