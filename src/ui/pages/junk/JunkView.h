#pragma once

// The Junk page: everything Quick Clean checks, item by item, grouped under the rules' headings.
// The first load selects every item found; "Clean Junk" puts the selected items before the user
// as a plan.

#include "ui/pages/Page.h"

#include <set>
#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QStackedLayout;
class QVBoxLayout;

namespace dorvik {

class AppState;
class JunkRuleRow;

class JunkView : public Page {
public:
    explicit JunkView(AppState& state, QWidget* parent = nullptr);

    const std::set<std::string>& selected() const { return selected_; }
    const std::vector<JunkRuleRow*>& rows() const { return rows_; }
    QPushButton* cleanButton() const { return clean_; }
    QPushButton* scanAgainButton() const { return scanAgain_; }
    // Whether "Searching…" stands in place of the list.
    bool showsSearching() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void rebuildList();
    void refreshLoading();
    void select(const std::vector<std::string>& ids, bool selected);
    void selectEverything();
    void refreshSelection();
    void proposeCleaning();

    AppState& state_;
    std::set<std::string> selected_;
    std::set<std::string> expanded_; // rule ids
    QPushButton* scanAgain_;
    QStackedLayout* stack_;
    QWidget* searching_;
    QWidget* nothingFound_;
    QWidget* list_;
    QVBoxLayout* groups_;
    std::vector<JunkRuleRow*> rows_;
    QLabel* summary_;
    QPushButton* clean_;
};

} // namespace dorvik
