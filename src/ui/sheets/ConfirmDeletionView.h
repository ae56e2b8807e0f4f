#pragma once

// The sheet that puts a plan before the user: its items by risk, what would go, and the one
// button that lets it go. Nothing is removed without it, and what is protected never goes.

#include "removal/DeletionPlan.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace dorvik {

class AppState;
class PlanListDelegate;

inline constexpr int confirmDeletionWidth = 640;

// How strongly a row is drawn: fully when its item will go, faintly when it won't.
double planRowOpacity(Risk risk, bool acceptedReview);

class ConfirmDeletionView : public QDialog {
public:
    ConfirmDeletionView(AppState& state, DeletionPlan plan, QWidget* parent = nullptr);

    const std::string& planId() const { return plan_.id; }
    bool acceptedReview() const { return acceptedReview_; }

    QListWidget* list() const { return list_; }
    // None when the plan has no review items.
    QCheckBox* reviewBox() const { return reviewBox_; }
    QLabel* totalLabel() const { return total_; }
    QPushButton* cancelButton() const { return cancel_; }
    QPushButton* confirmButton() const { return confirm_; }

    // "Cancel" and Escape: the plan goes, nothing with it.
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeHead();
    void fillList();
    QWidget* makeReviewConsent(size_t reviewCount);
    void setAcceptedReview(bool accepted);
    void refresh();

    AppState& state_;
    const DeletionPlan plan_;
    const std::array<std::vector<PlanItem>, 3> byRisk_;
    bool acceptedReview_ = false;
    QListWidget* list_;
    PlanListDelegate* delegate_;
    QCheckBox* reviewBox_ = nullptr;
    QLabel* reviewText_ = nullptr;
    QLabel* total_;
    QPushButton* cancel_;
    QPushButton* confirm_;
};

} // namespace dorvik
