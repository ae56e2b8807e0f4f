#pragma once

// The geometry of the ring map, apart from any widget: which arcs a folder's tree makes, how wide
// the rings are, which arc lies under a point, and how strongly each arc is drawn. The layout is
// made once for each folder shown; painting and hit testing only read it.
//
// Angles are radians from 12 o'clock, clockwise. Ring 0 is the centre disc; ring d holds the
// arcs of depth d, the children of the centre's folder being depth 1.

#include "scanning/FileNode.h"

#include <QColor>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace dorvik::Sunburst {

// A narrower angle than this is not drawn, and nor is any smaller sibling after it: a ring holds
// at most about 1,570 arcs whatever the size of the tree.
inline constexpr double smallestAngle = 0.004;

// The colours of the first ring, by place; every arc further out keeps its first-ring ancestor's.
inline constexpr std::array<QRgb, 12> palette = {
    qRgb(0x5B, 0x8C, 0xFF), qRgb(0x34, 0xC3, 0xA0), qRgb(0xF5, 0xB8, 0x3D), qRgb(0xFF, 0x6B, 0x8A),
    qRgb(0xB5, 0x7B, 0xFF), qRgb(0xFF, 0x9F, 0x43), qRgb(0x3D, 0xD6, 0xF5), qRgb(0x7B, 0xE0, 0x7B),
    qRgb(0xE8, 0x79, 0xF9), qRgb(0x60, 0xA5, 0xFA), qRgb(0xFA, 0xCC, 0x15), qRgb(0x2D, 0xD4, 0xBF),
};

struct Arc {
    FileNodePtr node;
    int depth = 0; // 1 for the first ring
    double start = 0;
    double end = 0;
    QRgb color = 0;
};

// The children of `folder` that are not deleted, largest first; equal sizes keep the walk's order.
std::vector<FileNodePtr> largestChildren(const FileNode& folder);

// The arcs of `root`'s descendants down to depth `maxDepth`, parents before their children. A
// child's angle is its share of its parent's size, so the parent's own small files and anything
// deleted since the scan leave a gap at the end of the parent's span.
std::vector<Arc> layout(const FileNodePtr& root, int maxDepth);
// The same for the part of the map below `node`: appends the arcs of its children at `depth`,
// sharing the span from `start` to `start + span`, in `inheritedColor` if given, and below them
// down to `maxDepth`.
void layout(const FileNode& node, int depth, int maxDepth, std::optional<QRgb> inheritedColor,
            double start, double span, std::vector<Arc>& arcs);

// The width of one ring in a view of this size: the centre and `maxDepth` rings fill the largest
// circle that fits.
double ringWidth(double width, double height, int maxDepth);

// The angle of the point (dx, dy) from the centre, y growing downwards: 0 straight up, π/2 to
// the right, in [0, 2π).
double angleAt(double dx, double dy);

struct Hit {
    int ring = 0;             // 0 for the centre
    const Arc* arc = nullptr; // into the arcs searched; none on the centre or a gap
};

// What lies at (dx, dy) from the centre. On a boundary between two arcs the later one wins.
Hit hitTest(const std::vector<Arc>& arcs, double ring, double dx, double dy);

// How opaque `arc` is drawn. While a node is hovered, that node and everything below it stand out
// and the rest fades; otherwise the rings fade a little outwards.
double opacity(const Arc& arc, const FileNode* hovered);

} // namespace dorvik::Sunburst
