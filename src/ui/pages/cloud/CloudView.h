#pragma once

// The iCloud Drive page: what iCloud keeps downloaded on this computer, in three figures and
// folder by folder, with the downloads that iCloud already has whole ready to be given back.
// Giving a download back deletes nothing: the file stays in iCloud. On Linux iCloud is not in
// use, and the page says so, as a Mac without iCloud Drive would.

#include "ui/pages/Page.h"

#include <set>
#include <string>
#include <vector>

class QLabel;
class QMessageBox;
class QPushButton;
class QStackedWidget;
class QVBoxLayout;

namespace dorvik {

class AppState;
class CloudFolderRow;
class ScanningRing;
class SelectionBar;
class StatTile;
struct CloudItem;

class CloudView : public Page {
public:
    explicit CloudView(AppState& state, QWidget* parent = nullptr);

    // What tests look at.
    QWidget* shownPane() const;
    QWidget* readingPane() const { return reading_; }
    QWidget* unavailablePane() const { return unavailable_; }
    QWidget* reportPane() const { return report_; }
    QWidget* nothingBig() const { return nothingBig_; }
    std::vector<StatTile*> tiles() const { return tiles_; }
    const std::vector<CloudFolderRow*>& folderRows() const { return folderRows_; }
    const std::set<std::string>& selected() const { return selected_; }
    SelectionBar* selectionBar() const { return bar_; }
    QPushButton* refreshButton() const { return refresh_; }
    ScanningRing* overlay() const { return overlay_; }
    // The confirmation on show, or none.
    QMessageBox* confirmation() const { return confirmation_; }

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeReport();
    QWidget* makeUnavailable();
    void showReport();
    void showFolders();
    void showSelection();
    void select(const std::vector<std::string>& paths, bool on);
    std::vector<CloudItem> selectedItems() const;
    void confirmRemoval();

    AppState& state_;
    QPushButton* refresh_ = nullptr;
    QStackedWidget* panes_ = nullptr;
    QWidget* reading_ = nullptr;
    QWidget* unavailable_ = nullptr;
    QWidget* report_ = nullptr;
    QWidget* nothingBig_ = nullptr;
    std::vector<StatTile*> tiles_;
    QVBoxLayout* folderList_ = nullptr;
    QWidget* folderCard_ = nullptr;
    std::vector<CloudFolderRow*> folderRows_;
    SelectionBar* bar_ = nullptr;
    ScanningRing* overlay_ = nullptr;
    QMessageBox* confirmation_ = nullptr;
    std::set<std::string> selected_;
    std::set<std::string> expanded_;
};

} // namespace dorvik
