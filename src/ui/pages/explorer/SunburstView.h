#pragma once

// The ring map of one folder: the folder in the centre, its children in the first ring, their
// children in the next, each as wide as its share of its parent. Hovering an arc names it in the
// centre and makes it stand out; a click on a folder's arc opens it, a click on the centre goes
// up. The page decides what opening and going up mean.

#include "scanning/FileNode.h"
#include "ui/pages/explorer/SunburstLayout.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace dorvik {

class SunburstView : public QWidget {
public:
    explicit SunburstView(QWidget* parent = nullptr);

    // Shows `root` in the centre and lays its tree out once.
    void setRoot(FileNodePtr root);
    const FileNodePtr& root() const { return root_; }
    // Lays the same tree out again after it changed, as when nodes were removed.
    void relayout();
    // The deepest ring drawn; the centre and the rings share the radius evenly.
    void setMaxDepth(int maxDepth);
    int maxDepth() const { return maxDepth_; }

    // The node under the pointer; none on the centre, on a gap or outside.
    const FileNodePtr& hovered() const { return hovered_; }
    const std::vector<Sunburst::Arc>& arcs() const { return arcs_; }

    std::function<void(const FileNodePtr&)> onOpen;   // a folder's arc was clicked
    std::function<void()> onUp;                       // the centre was clicked
    std::function<void(const FileNodePtr&)> onSelect; // the hovered node changed; none for nothing

    QSize sizeHint() const override { return {520, 520}; }
    QSize minimumSizeHint() const override { return {300, 300}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    double ring() const;
    Sunburst::Hit hitAt(QPointF position) const;
    bool canGoUp() const;
    // Follows the pointer, or its absence, to the node under it.
    void trackPointer(std::optional<QPointF> position);
    void setHovered(FileNodePtr node);
    void paintArcs(QPainter& painter, double ringWidth) const;
    void paintCentre(QPainter& painter, double ringWidth) const;

    FileNodePtr root_;
    int maxDepth_ = 5;
    std::vector<Sunburst::Arc> arcs_;
    FileNodePtr hovered_;
    std::optional<QPointF> pointer_; // where the pointer is over the view
    bool pointerOnCentre_ = false;
};

} // namespace dorvik
