#include "ui/pages/trends/ForecastCardView.h"

#include "trends/TrendTexts.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/pages/trends/SpaceChartView.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include <cmath>

namespace dorvik {

namespace {

// The progress bar counts hundredths of a day.
constexpr int progressSteps = 100;

Style::Tint styleTint(Tint tint) {
    switch (tint) {
    case Tint::red:
        return Style::Tint::danger;
    case Tint::amber:
        return Style::Tint::warning;
    case Tint::green:
        break;
    }
    return Style::Tint::positive;
}

} // namespace

ForecastCardView::ForecastCardView(QWidget* parent)
    : QFrame(parent), symbol_(new SymbolView("hourglass", Style::headlineIcon)),
      title_(Style::label({}, Style::TextRole::headline)),
      detail_(Style::label({}, Style::TextRole::secondary)), learning_(new QProgressBar),
      chart_(new SpaceChartView) {
    Style::makeCard(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->setSpacing(Style::sectionGap);
    auto* top = new QHBoxLayout;
    top->setSpacing(Style::gap + 4);
    symbol_->setBadge(true);
    top->addWidget(symbol_, 0, Qt::AlignTop);
    auto* words = new QVBoxLayout;
    words->setSpacing(Style::smallGap);
    words->addWidget(title_);
    detail_->setWordWrap(true);
    words->addWidget(detail_);
    learning_->setRange(0, static_cast<int>(ForecastLimits::minimumSpanDays * progressSteps));
    learning_->setTextVisible(false);
    learning_->setMaximumHeight(8);
    words->addWidget(learning_);
    top->addLayout(words, 1);
    layout->addLayout(top);
    layout->addWidget(chart_);
}

void ForecastCardView::refresh(const std::vector<SpaceSample>& samples,
                               const std::optional<VolumeInfo>& volume, double now) {
    const ForecastCardContent content = forecastCard(samples, volume, now);
    if (content.summary) {
        symbol_->setSymbol(content.summary->symbol);
        symbol_->setTint(styleTint(content.summary->tint));
        title_->setText(shownText(content.summary->title));
        detail_->setText(shownText(content.summary->detail));
    } else {
        symbol_->setSymbol("hourglass");
        symbol_->setTint(Style::Tint::accent);
        title_->setText(shownText(TrendTexts::learningTitle));
        detail_->setText(shownText(TrendTexts::learningText));
        learning_->setValue(static_cast<int>(std::lround(content.learnedDays * progressSteps)));
    }
    learning_->setVisible(!content.summary);
    chart_->setVisible(content.showsChart);
    if (content.showsChart) {
        chart_->setHistory(samples, volume->total, content.forecast);
    }
}

} // namespace dorvik
