#pragma once

// "Large & Old": every file of the scan with a node of its own, filtered by the filter the state
// keeps, sorted by any column, exported as CSV.

#include "ui/pages/ScanPage.h"

namespace dorvik {

class FileListPanel;

class LargeFilesView : public ScanPage {
public:
    explicit LargeFilesView(AppState& state, QWidget* parent = nullptr);

    FileListPanel* list() const { return list_; }

private:
    void refresh();

    FileListPanel* list_;
};

} // namespace dorvik
