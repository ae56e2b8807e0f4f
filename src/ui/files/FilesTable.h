#pragma once

// The sortable table of scanned nodes that the file lists and the explorer share: a click on a
// header re-sorts, the selection is a set of nodes, a right click opens the node menu and the
// space key previews the selection.

#include "scanning/FileNode.h"
#include "ui/files/NodeTableModel.h"

#include <QTableView>

#include <functional>
#include <vector>

namespace dorvik {

class AppState;
class PreviewWindow;
class SelectionBar;

class FilesTable : public QTableView {
public:
    // The columns of the file lists; the kind is left out where every row has the same.
    static std::vector<NodeColumn> fileListColumns(bool showKind);

    FilesTable(AppState& state, std::vector<NodeColumn> columns, QWidget* parent = nullptr);

    NodeTableModel* nodeModel() const { return model_; }
    // Rows from many folders: each name gets its folder on a second line.
    void showFolderLines();
    // What the table says in place of rows when it has none; empty says nothing.
    void setEmptyText(const QString& text);
    const QString& emptyText() const { return emptyText_; }
    // Replaces the rows, keeping the sort and, where the nodes are still there, the selection.
    void setNodes(std::vector<FileNodePtr> nodes);
    std::vector<FileNodePtr> selectedNodes() const;

    // A bar under the table that tells the selection's count and size and offers "Delete
    // Items"; it takes onSelectionChanged.
    SelectionBar* makeSelectionBar();

    // Shows the node in the preview window.
    void preview(const FileNodePtr& node);
    PreviewWindow* previewWindow() const { return preview_; }

    // The nodes a right click at `row` concerns: the selection if the row is in it, else the
    // row alone.
    std::vector<FileNodePtr> nodesForMenuAt(int row) const;

    std::function<void()> onSelectionChanged;
    // A row was double-clicked or entered with Return.
    std::function<void(const FileNodePtr&)> onActivated;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showMenu(const QPoint& position);

    AppState& state_;
    NodeTableModel* model_;
    PreviewWindow* preview_ = nullptr;
    QString emptyText_;
};

} // namespace dorvik
