#pragma once

// "By File Type": one tile for each kind of file the scan met, and for the kind picked, its files
// in a list with the file lists' filters.

#include "scanning/FileFilter.h"
#include "ui/pages/ScanPage.h"

#include <vector>

class QGridLayout;
class QLabel;

namespace dorvik {

class FileListPanel;
class KindTile;

class TypesView : public ScanPage {
public:
    explicit TypesView(AppState& state, QWidget* parent = nullptr);

    const std::vector<KindTile*>& tiles() const { return tiles_; }
    // Shows the files of `kind`, as a click on its tile does.
    void pickKind(FileKind kind);

    const FileFilter& filter() const { return filter_; }
    FileListPanel* list() const { return list_; }

private:
    void rebuildTiles();
    void refreshList();

    FileFilter filter_;
    std::vector<KindTile*> tiles_;
    QGridLayout* grid_;
    QLabel* pickHint_ = nullptr;
    FileListPanel* list_;
};

} // namespace dorvik
