#include "ui/pages/trends/SpaceChartView.h"

#include "ui/QtText.h"
#include "ui/Style.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace dorvik {

namespace {

constexpr size_t dateLabels = 6;
constexpr int sizeLabelWidth = 64;
constexpr int dateLabelHeight = 20;
constexpr double fillTop = 0.35;
constexpr double fillBottom = 0.03;
constexpr double diskRuleOpacity = 0.6;

} // namespace

SpaceChartView::SpaceChartView(QWidget* parent) : QWidget(parent) {
    setFixedHeight(chartHeight);
    setAccessibleName(tr("Used space over time"));
}

void SpaceChartView::setHistory(const std::vector<SpaceSample>& samples, int64_t total,
                                const std::optional<SpaceForecast>& forecast) {
    data_ = SpaceChart::chartData(samples, forecast, total);
    axes_ = SpaceChart::axes(data_, dateLabels);
    total_ = static_cast<double>(total);
    update();
}

void SpaceChartView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colours = palette();
    const QRectF plot = QRectF(rect()).adjusted(sizeLabelWidth, 8, -8, -dateLabelHeight);
    const double span = axes_.end - axes_.start;
    const double range = data_.axisTop - data_.axisBottom;
    const auto at = [&](const SpaceChart::Point& point) {
        return QPointF(plot.left() + (point.date - axes_.start) / span * plot.width(),
                       plot.bottom() - (point.used - data_.axisBottom) / range * plot.height());
    };
    const auto yOf = [&](double used) { return at({axes_.start, used}).y(); };

    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    painter.setFont(small);
    const QColor gridColour = Style::separator(colours);
    const QColor labelColour = Style::secondaryText(colours);
    for (const SpaceChart::Tick& tick : axes_.sizes) {
        const double y = yOf(tick.value);
        painter.setPen(QPen(gridColour, 1));
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        painter.setPen(labelColour);
        painter.drawText(QRectF(0, y - 10, sizeLabelWidth - 8, 20),
                         Qt::AlignRight | Qt::AlignVCenter, qtText(tick.label));
    }
    for (const SpaceChart::Tick& tick : axes_.dates) {
        const double x = at({tick.value, data_.axisBottom}).x();
        painter.setPen(labelColour);
        painter.drawText(QRectF(x - 40, plot.bottom() + 2, 80, dateLabelHeight - 2),
                         Qt::AlignHCenter | Qt::AlignTop, qtText(tick.label));
    }

    if (data_.history.empty()) {
        return;
    }
    const QColor lineColour = Style::accent(colours);
    QPainterPath line;
    line.moveTo(at(data_.history.front()));
    for (const SpaceChart::Point& point : data_.history) {
        line.lineTo(at(point));
    }
    QPainterPath area = line;
    area.lineTo(at({data_.history.back().date, data_.axisBottom}));
    area.lineTo(at({data_.history.front().date, data_.axisBottom}));
    area.closeSubpath();
    QLinearGradient fade(plot.topLeft(), plot.bottomLeft());
    fade.setColorAt(0, Style::faded(lineColour, fillTop));
    fade.setColorAt(1, Style::faded(lineColour, fillBottom));
    painter.fillPath(area, fade);
    painter.setPen(QPen(lineColour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(line);

    if (data_.projection.size() == 2) {
        painter.setPen(QPen(Style::warning(colours), 2, Qt::DashLine, Qt::RoundCap));
        painter.drawLine(at(data_.projection.front()), at(data_.projection.back()));
    }
    if (data_.reachesDisk) {
        const QColor danger = Style::faded(Style::danger(colours), diskRuleOpacity);
        const double y = yOf(total_);
        painter.setPen(QPen(danger, 1.5));
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        painter.setPen(Style::danger(colours));
        const double endX = at(data_.projection.back()).x();
        painter.drawText(QRectF(endX - 120, y + 2, 120, 18), Qt::AlignRight | Qt::AlignTop,
                         tr("Disk full"));
    }
}

} // namespace dorvik
