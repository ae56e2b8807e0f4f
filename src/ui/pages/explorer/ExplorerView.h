#pragma once

// The explorer: the scanned tree folder by folder, as a list sorted by size or as a ring map,
// both over the folder the state's navigation has open.

#include "scanning/FileNode.h"
#include "ui/pages/ScanPage.h"

class QLabel;
class QStackedWidget;

namespace dorvik {

class Breadcrumbs;
class FilesTable;
class MapSidePanel;
class SegmentedControl;
class SelectionBar;
class SunburstView;

enum class ExplorerMode { list, map };

class ExplorerView : public ScanPage {
public:
    explicit ExplorerView(AppState& state, QWidget* parent = nullptr);

    ExplorerMode mode() const { return mode_; }
    void setMode(ExplorerMode mode);

    // The folder open, the deepest of the navigation still there.
    FileNodePtr current() const;
    // Opens `folder`, a child of the current one.
    void open(const FileNodePtr& folder);
    // Goes up to the parent of the current folder.
    void up();

    Breadcrumbs* breadcrumbs() const { return breadcrumbs_; }
    FilesTable* table() const { return table_; }
    QLabel* smallFilesNote() const { return smallFiles_; }
    QWidget* unreadableNote() const { return unreadable_; }
    SelectionBar* selectionBar() const { return selectionBar_; }
    SunburstView* sunburst() const { return sunburst_; }
    MapSidePanel* sidePanel() const { return sidePanel_; }
    SegmentedControl* modePicker() const { return modePicker_; }

private:
    QWidget* makeList();
    QWidget* makeMap();
    void refresh();

    ExplorerMode mode_;
    SegmentedControl* modePicker_;
    Breadcrumbs* breadcrumbs_;
    QStackedWidget* modes_;
    FilesTable* table_ = nullptr;
    QLabel* smallFiles_ = nullptr;
    QWidget* unreadable_ = nullptr;
    SelectionBar* selectionBar_ = nullptr;
    SunburstView* sunburst_ = nullptr;
    MapSidePanel* sidePanel_ = nullptr;
    FileNodePtr shownRoot_;
};

} // namespace dorvik
