#pragma once

// The Login Items page: what starts by itself at login, in one section per scope, each item with
// its owner's icon and name, what it runs, its badges ("App removed", "At login", "Always
// running"), "Show in Finder", and "Remove" (or "Remove…" where an administrator's password
// follows). Apple's own items have no remove action. It reads everything afresh each time it
// appears, and again after each removal.

#include "ui/pages/Page.h"

#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace dorvik {

class AppState;
class LoginItemRow;
class ScanningRing;

class LoginItemsView : public Page {
public:
    explicit LoginItemsView(AppState& state, QWidget* parent = nullptr);

    // What tests look at.
    const std::vector<QLabel*>& sectionTitles() const { return sectionTitles_; }
    const std::vector<LoginItemRow*>& rows() const { return rows_; }
    QLabel* message() const { return message_; }
    QWidget* loading() const { return loading_; }

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void showItems();
    void showMessage();

    AppState& state_;
    QWidget* loading_ = nullptr;
    QLabel* message_ = nullptr;
    QLabel* nothing_ = nullptr;
    QVBoxLayout* sections_ = nullptr;
    std::vector<QLabel*> sectionTitles_;
    std::vector<LoginItemRow*> rows_;
};

} // namespace dorvik
