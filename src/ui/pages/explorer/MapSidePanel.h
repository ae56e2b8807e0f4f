#pragma once

// Beside the ring map: the largest items of the folder the pointer rests on, or of the folder
// shown when it rests on nothing, each with its size and its share of that folder, and a button
// that shows the folder in the file manager.

#include "scanning/FileNode.h"

#include <QWidget>

#include <array>
#include <functional>
#include <vector>

class QLabel;
class QPushButton;

namespace dorvik {

class ElidedLabel;
class UsageBar;

class MapSidePanel : public QWidget {
public:
    static constexpr size_t shownItems = 10;

    explicit MapSidePanel(QWidget* parent = nullptr);

    // The folder the map shows.
    void setCurrent(FileNodePtr current);
    const FileNodePtr& current() const { return current_; }
    // The node the pointer rests on; none to list the current folder.
    void setFocusNode(FileNodePtr focus);
    const FileNodePtr& focusNode() const { return focus_; }
    // The focus, or the current folder without one.
    const FileNodePtr& listed() const { return focus_ != nullptr ? focus_ : current_; }
    // Reads the listed folder again after its tree changed, as when nodes were removed.
    void refresh();

    // The items on show, largest first.
    const std::vector<FileNodePtr>& items() const { return items_; }

    std::function<void(const FileNodePtr&)> onReveal; // with `listed()`

private:
    struct Row {
        QWidget* widget;
        ElidedLabel* name;
        QLabel* size;
        UsageBar* bar;
        QLabel* share;
    };
    static Row makeRow();

    FileNodePtr current_;
    FileNodePtr focus_;
    std::vector<FileNodePtr> items_;
    ElidedLabel* folderName_;
    QLabel* folderSize_;
    std::array<Row, shownItems> rows_;
    QPushButton* reveal_;
};

} // namespace dorvik
