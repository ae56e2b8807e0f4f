#pragma once

// A list of files as both file pages show it: the filter bar over the table, a line under it
// with "Export to CSV", and the selection bar.

#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;

namespace dorvik {

class AppState;
class FilesTable;
class FilterBar;

class FileListPanel : public QWidget {
public:
    // `exportName` gives the name the export suggests, without ".csv", when it is asked.
    FileListPanel(AppState& state, bool showKind, std::function<QString()> exportName,
                  QWidget* parent = nullptr);

    FilterBar* filterBar() const { return filterBar_; }
    FilesTable* table() const { return table_; }
    // The line beside the export button, for the page to fill.
    QLabel* footnote() const { return footnote_; }
    QPushButton* exportButton() const { return export_; }

private:
    FilterBar* filterBar_;
    FilesTable* table_;
    QLabel* footnote_;
    QPushButton* export_;
};

} // namespace dorvik
