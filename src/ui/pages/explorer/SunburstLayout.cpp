#include "ui/pages/explorer/SunburstLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace dorvik::Sunburst {

namespace {

constexpr double fullTurn = 2 * std::numbers::pi;
constexpr double hoveredOpacity = 1.0;
constexpr double unhoveredOpacity = 0.25;
constexpr double fadePerRing = 0.12;
constexpr double faintestRing = 0.45;

bool isWithin(const FileNodePtr& node, const FileNode& ancestor) {
    for (FileNodePtr at = node; at != nullptr; at = at->parent.lock()) {
        if (at.get() == &ancestor) {
            return true;
        }
    }
    return false;
}

} // namespace

std::vector<FileNodePtr> largestChildren(const FileNode& folder) {
    std::vector<FileNodePtr> children;
    children.reserve(folder.children.size());
    for (const FileNodePtr& child : folder.children) {
        if (!child->deleted) {
            children.push_back(child);
        }
    }
    std::stable_sort(children.begin(), children.end(),
                     [](const FileNodePtr& a, const FileNodePtr& b) { return a->size > b->size; });
    return children;
}

std::vector<Arc> layout(const FileNodePtr& root, int maxDepth) {
    std::vector<Arc> arcs;
    if (root != nullptr) {
        layout(*root, 1, maxDepth, std::nullopt, 0, fullTurn, arcs);
    }
    return arcs;
}

void layout(const FileNode& node, int depth, int maxDepth, std::optional<QRgb> inheritedColor,
            double start, double span, std::vector<Arc>& arcs) {
    if (depth > maxDepth || node.size < 1) {
        return;
    }
    const std::vector<FileNodePtr> children = largestChildren(node);
    double cursor = start;
    for (size_t i = 0; i < children.size(); ++i) {
        const FileNodePtr& child = children[i];
        if (child->size < 1) {
            continue;
        }
        const double angle =
            span * static_cast<double>(child->size) / static_cast<double>(node.size);
        if (angle < smallestAngle) {
            // Sorted largest first, so every sibling left is narrower still: a gap stays.
            break;
        }
        const QRgb colour = inheritedColor.value_or(palette[i % palette.size()]);
        arcs.push_back({child, depth, cursor, cursor + angle, colour});
        if (child->isDirectory) {
            layout(*child, depth + 1, maxDepth, colour, cursor, angle, arcs);
        }
        cursor += angle;
    }
}

double ringWidth(double width, double height, int maxDepth) {
    const double radius = std::min(width, height) / 2;
    return radius / (maxDepth + 1);
}

double angleAt(double dx, double dy) {
    const double angle = std::atan2(dx, -dy);
    return angle < 0 ? angle + fullTurn : angle;
}

Hit hitTest(const std::vector<Arc>& arcs, double ring, double dx, double dy) {
    if (!(ring > 0)) {
        return {};
    }
    const double rings = std::hypot(dx, dy) / ring;
    if (!(rings >= 1)) {
        return {};
    }
    // Held to the largest int, so that a point far outside stays a ring beyond any arc.
    constexpr int farthest = std::numeric_limits<int>::max();
    const int index = rings < farthest ? static_cast<int>(rings) : farthest;
    const double angle = angleAt(dx, dy);
    for (const Arc& arc : arcs) {
        if (arc.depth == index && arc.start <= angle && angle < arc.end) {
            return {index, &arc};
        }
    }
    return {index, nullptr};
}

double opacity(const Arc& arc, const FileNode* hovered) {
    if (hovered != nullptr) {
        return isWithin(arc.node, *hovered) ? hoveredOpacity : unhoveredOpacity;
    }
    return std::max(1 - fadePerRing * (arc.depth - 1), faintestRing);
}

} // namespace dorvik::Sunburst
