#pragma once

// The Trends page's first card: when the disk would fill up at the current pace, or how far the
// learning has come, and under it the chart of used space.

#include "trends/ForecastCard.h"

#include <QFrame>

class QLabel;
class QProgressBar;

namespace dorvik {

class SpaceChartView;
class SymbolView;

class ForecastCardView : public QFrame {
public:
    explicit ForecastCardView(QWidget* parent = nullptr);

    void refresh(const std::vector<SpaceSample>& samples, const std::optional<VolumeInfo>& volume,
                 double now);

    QLabel* title() const { return title_; }
    QLabel* detail() const { return detail_; }
    QProgressBar* learning() const { return learning_; }
    SpaceChartView* chart() const { return chart_; }

private:
    SymbolView* symbol_;
    QLabel* title_;
    QLabel* detail_;
    QProgressBar* learning_;
    SpaceChartView* chart_;
};

} // namespace dorvik
