#pragma once

// A quick look at a file without opening its application: a picture shown whole, the start of
// a text, or for anything else the facts the scan knows. Space or Escape closes it.

#include "scanning/FileNode.h"

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QStackedLayout;

namespace dorvik {

class PictureView;

class PreviewWindow : public QDialog {
public:
    explicit PreviewWindow(QWidget* parent = nullptr);

    void showNode(const FileNodePtr& node);
    const FileNodePtr& node() const { return node_; }

    enum class Showing { picture, text, facts };
    Showing showing() const;
    PictureView* pictureView() const { return picture_; }
    QLabel* factsLabel() const { return facts_; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    // Makes the window as large as the picture wants, within most of the screen.
    void fitToPicture();

    FileNodePtr node_;
    QStackedLayout* stack_;
    PictureView* picture_;
    QPlainTextEdit* text_;
    QLabel* facts_;
    QLabel* caption_;
};

} // namespace dorvik
