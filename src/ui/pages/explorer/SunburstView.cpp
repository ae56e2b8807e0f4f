#include "ui/pages/explorer/SunburstView.h"

#include "base/TextForms.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/NodeTitle.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace dorvik {

namespace {

constexpr double arcGap = 1.5;         // taken off each arc's outer edge, so the rings stay apart
constexpr double centreDiameter = 2.1; // in rings: the room for the centre's text
constexpr double centreLinesHeight = 1.6; // in rings: the most the centre's text may take
constexpr double lineSpacing = 2;
constexpr double centrePadding = 8; // kept free inside the disc's edge, across
constexpr double smallestTextScale = 0.75;

double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

// One ring segment. Qt counts degrees anticlockwise from 3 o'clock; the arcs count radians
// clockwise from 12.
QPainterPath arcPath(QPointF centre, double inner, double outer, double start, double end) {
    const QRectF outerBounds(centre.x() - outer, centre.y() - outer, 2 * outer, 2 * outer);
    const QRectF innerBounds(centre.x() - inner, centre.y() - inner, 2 * inner, 2 * inner);
    const double from = 90 - degrees(start);
    const double sweep = degrees(end - start);
    QPainterPath path;
    path.arcMoveTo(outerBounds, from);
    path.arcTo(outerBounds, from, -sweep);
    path.arcTo(innerBounds, from - sweep, sweep);
    path.closeSubpath();
    return path;
}

// The width of the circle of `radius` at `offset` above or below its centre.
double chord(double radius, double offset) {
    return offset >= radius ? 0 : 2 * std::sqrt(radius * radius - offset * offset);
}

struct CentreLine {
    QString text;
    QFont font;
    QColor colour;
    bool elide = false; // in the middle when there is no room; the other lines shrink first
    bool upSymbol = false;
};

struct PlacedLine {
    const CentreLine* line;
    double top;
    double height;
    double width;  // the room across, inside the disc
    double symbol; // the room the symbol takes before the text
};

double stackHeight(const std::vector<CentreLine>& lines) {
    double total = -lineSpacing;
    for (const CentreLine& line : lines) {
        total += QFontMetricsF(line.font).height() + lineSpacing;
    }
    return total;
}

// The lines stacked around the middle of the disc, each as wide as the disc is at the line's
// edge farther from the middle, and no wider than the centre's room.
std::vector<PlacedLine> placeLines(const std::vector<CentreLine>& lines, QPointF centre,
                                   double radius, double ringWidth) {
    std::vector<PlacedLine> placed;
    double top = centre.y() - stackHeight(lines) / 2;
    for (const CentreLine& line : lines) {
        const double height = QFontMetricsF(line.font).height();
        const double farEdge =
            std::max(std::abs(top - centre.y()), std::abs(top + height - centre.y()));
        const double width =
            std::min(centreDiameter * ringWidth, chord(radius, farEdge)) - centrePadding;
        const double symbol = line.upSymbol ? std::round(height * 0.9) + Style::smallGap : 0;
        placed.push_back({&line, top, height, std::max(width, 0.0), symbol});
        top += height + lineSpacing;
    }
    return placed;
}

// How much the lines must shrink to fit: in height, and across where they stand.
double fittingScale(const std::vector<CentreLine>& lines, QPointF centre, double radius,
                    double ringWidth) {
    double scale = std::min(1.0, centreLinesHeight * ringWidth / stackHeight(lines));
    for (const PlacedLine& placed : placeLines(lines, centre, radius, ringWidth)) {
        if (placed.line->elide) {
            continue;
        }
        const double needed =
            QFontMetricsF(placed.line->font).horizontalAdvance(placed.line->text) + placed.symbol;
        if (needed > placed.width) {
            // A little to spare: text does not shrink exactly in step with its font.
            scale = std::min(scale, 0.95 * placed.width / needed);
        }
    }
    return scale;
}

} // namespace

SunburstView::SunburstView(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void SunburstView::setRoot(FileNodePtr root) {
    root_ = std::move(root);
    relayout();
}

void SunburstView::setMaxDepth(int maxDepth) {
    maxDepth_ = std::max(maxDepth, 1);
    relayout();
}

void SunburstView::relayout() {
    arcs_ = Sunburst::layout(root_, maxDepth_);
    // The node under a still pointer may have gone or moved.
    trackPointer(pointer_);
    update();
}

double SunburstView::ring() const {
    return Sunburst::ringWidth(width(), height(), maxDepth_);
}

Sunburst::Hit SunburstView::hitAt(QPointF position) const {
    const QPointF offset = position - QRectF(rect()).center();
    return Sunburst::hitTest(arcs_, ring(), offset.x(), offset.y());
}

bool SunburstView::canGoUp() const {
    return root_ != nullptr && root_->parent.lock() != nullptr;
}

void SunburstView::trackPointer(std::optional<QPointF> position) {
    pointer_ = position;
    const std::optional<Sunburst::Hit> hit =
        position ? std::optional(hitAt(*position)) : std::nullopt;
    const bool onCentre = hit && hit->ring == 0;
    const bool opens = hit && hit->arc != nullptr && hit->arc->node->isDirectory;
    if (opens || (onCentre && canGoUp())) {
        setCursor(Qt::PointingHandCursor);
    } else {
        unsetCursor();
    }
    if (onCentre != pointerOnCentre_) {
        pointerOnCentre_ = onCentre;
        update();
    }
    setHovered(hit && hit->arc != nullptr ? hit->arc->node : nullptr);
}

void SunburstView::setHovered(FileNodePtr node) {
    if (node == hovered_) {
        return;
    }
    hovered_ = std::move(node);
    update();
    if (onSelect) {
        onSelect(hovered_);
    }
}

void SunburstView::mouseMoveEvent(QMouseEvent* event) {
    trackPointer(event->position());
}

void SunburstView::leaveEvent(QEvent*) {
    const bool wasHovering = hovered_ != nullptr;
    trackPointer(std::nullopt);
    // Leaving always says so, even from the centre or a gap where nothing was hovered.
    if (!wasHovering && onSelect) {
        onSelect(nullptr);
    }
}

void SunburstView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint())) {
        return;
    }
    const Sunburst::Hit hit = hitAt(event->position());
    if (hit.ring == 0) {
        if (onUp) {
            onUp();
        }
        return;
    }
    if (hit.arc != nullptr && hit.arc->node->isDirectory && onOpen) {
        // A copy: opening usually lays out a new root, which replaces the arc.
        const FileNodePtr node = hit.arc->node;
        onOpen(node);
    }
}

void SunburstView::paintEvent(QPaintEvent*) {
    if (root_ == nullptr) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double ringWidth = ring();
    paintArcs(painter, ringWidth);
    paintCentre(painter, ringWidth);
}

void SunburstView::paintArcs(QPainter& painter, double ringWidth) const {
    const QPointF centre = QRectF(rect()).center();
    // The page's background, so that the outlines read as gaps between the arcs.
    painter.setPen(QPen(palette().color(QPalette::Base), 1));
    for (const Sunburst::Arc& arc : arcs_) {
        const double inner = arc.depth * ringWidth;
        const double outer = (arc.depth + 1) * ringWidth - arcGap;
        painter.setBrush(
            Style::faded(QColor::fromRgb(arc.color), Sunburst::opacity(arc, hovered_.get())));
        painter.drawPath(arcPath(centre, inner, outer, arc.start, arc.end));
    }
}

void SunburstView::paintCentre(QPainter& painter, double ringWidth) const {
    const QPointF centre = QRectF(rect()).center();
    const double radius = ringWidth - arcGap;
    if (pointerOnCentre_ && canGoUp()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Style::faded(palette().color(QPalette::WindowText), 0.06));
        painter.drawEllipse(centre, radius, radius);
    }

    const FileNode& shown = hovered_ != nullptr ? *hovered_ : *root_;
    QFont nameFont = font();
    nameFont.setWeight(QFont::DemiBold);
    QFont sizeFont = font();
    sizeFont.setPointSizeF(font().pointSizeF() * 1.35);
    sizeFont.setWeight(QFont::Bold);
    QFont smallFont = font();
    smallFont.setPointSizeF(font().pointSizeF() * 0.85);

    std::vector<CentreLine> lines = {
        {nodeTitle(shown), nameFont, palette().color(QPalette::WindowText), true},
        {qtText(TextForms::size(shown.size)), sizeFont, palette().color(QPalette::WindowText)},
        {qtText(
             TextForms::percent(static_cast<double>(shown.size), static_cast<double>(root_->size))),
         smallFont, Style::secondaryText(palette())},
    };
    if (canGoUp()) {
        lines.push_back({tr("Up"), smallFont, Style::accent(palette()), false, true});
    }

    // The name gives way in the middle; the other lines shrink with it until they fit the disc.
    // Where that would make them too small to read, the last lines go first.
    double scale = fittingScale(lines, centre, radius, ringWidth);
    while (scale < smallestTextScale && lines.size() > 2) {
        lines.pop_back();
        scale = fittingScale(lines, centre, radius, ringWidth);
    }
    scale = std::clamp(scale, smallestTextScale, 1.0);
    for (CentreLine& line : lines) {
        line.font.setPointSizeF(line.font.pointSizeF() * scale);
    }

    for (const PlacedLine& placed : placeLines(lines, centre, radius, ringWidth)) {
        const CentreLine& line = *placed.line;
        const QFontMetricsF metrics(line.font);
        const QString text = metrics.elidedText(
            line.text, line.elide ? Qt::ElideMiddle : Qt::ElideRight, placed.width - placed.symbol);
        if (text.isEmpty() || text == QStringLiteral("…")) {
            continue; // a view too small for this line
        }
        const double textWidth = metrics.horizontalAdvance(text);
        const double left = centre.x() - (textWidth + placed.symbol) / 2;
        if (line.upSymbol) {
            const double symbolSize = placed.symbol - Style::smallGap;
            const QRectF symbolRect(left, placed.top + (placed.height - symbolSize) / 2, symbolSize,
                                    symbolSize);
            Symbols::icon("arrow.up", line.colour).paint(&painter, symbolRect.toRect());
        }
        painter.setFont(line.font);
        painter.setPen(line.colour);
        painter.drawText(QRectF(left + placed.symbol, placed.top, textWidth + 1, placed.height),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, text);
    }
}

} // namespace dorvik
