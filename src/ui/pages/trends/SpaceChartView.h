#pragma once

// The chart of used space, drawn with QPainter: the history as a line over a fading fill, the
// forecast's projection dashed, and the disk's size as a rule when the projection reaches it.
// Where everything goes is computed by SpaceChart (trends/), the view only scales and draws it.

#include "trends/ChartAxes.h"

#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

namespace dorvik {

class SpaceChartView : public QWidget {
public:
    explicit SpaceChartView(QWidget* parent = nullptr);

    void setHistory(const std::vector<SpaceSample>& samples, int64_t total,
                    const std::optional<SpaceForecast>& forecast);

    const SpaceChart::Data& data() const { return data_; }

    QSize sizeHint() const override { return {600, chartHeight}; }

    static constexpr int chartHeight = 220;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SpaceChart::Data data_;
    SpaceChart::Axes axes_;
    double total_ = 0;
};

} // namespace dorvik
