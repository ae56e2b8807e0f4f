#include "ui/tray/MenuBarPanel.h"

#include "base/Dates.h"
#include "base/TextForms.h"
#include "state/AppState.h"
#include "trends/Forecast.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/UsageRing.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace dorvik {

namespace {

Style::Tint styleTint(Tint tint) {
    switch (tint) {
    case Tint::green:
        return Style::Tint::positive;
    case Tint::amber:
        return Style::Tint::warning;
    case Tint::red:
        return Style::Tint::danger;
    }
    return Style::Tint::text;
}

// Beside a row's symbol. A wrapped text is given its width outright: asked for its height
// before it has a width, it would take too few lines in a popup of fixed width.
constexpr int rowTextWidth =
    menuBarPanelWidth - 2 * Style::cardPadding - Style::smallIcon - Style::gap;

QLabel* wrappedLabel(Style::TextRole role) {
    QLabel* label = Style::label({}, role);
    label->setWordWrap(true);
    label->setFixedWidth(rowTextWidth);
    return label;
}

// The window's layout does not ask a label for its height at a width, so it is told.
void setWrappedText(QLabel* label, const QString& text) {
    label->setText(text);
    label->setMinimumHeight(label->heightForWidth(rowTextWidth));
}

} // namespace

MenuBarPanel::MenuBarPanel(AppState& state, std::function<void()> openWindow, QWidget* parent)
    : QFrame(parent), state_(state), openWindow_(std::move(openWindow)) {
    setFixedWidth(menuBarPanelWidth);
    setFrameShape(QFrame::StyledPanel);

    removedApp_ = new QPushButton;
    removedApp_->setIcon(Symbols::icon("puzzlepiece.extension.fill", Style::Tint::warning));
    removedApp_->hide();
    connect(removedApp_, &QPushButton::clicked, this, [this] { act(openWindow_); });
    connect(&state_.removedApp(), &RemovedAppState::removedAppChanged, this,
            &MenuBarPanel::refreshRemovedApp);

    quickClean_ = new QPushButton(Symbols::icon("wand.and.stars"), shownText("Quick Clean"));
    connect(quickClean_, &QPushButton::clicked, this, [this] {
        act([this] {
            state_.setSection(AppSection::smartClean);
            state_.quickClean().startOver();
            openWindow_();
            state_.quickClean().start();
        });
    });
    openDorvik_ = new QPushButton(tr("Open Dorvik"));
    connect(openDorvik_, &QPushButton::clicked, this, [this] { act(openWindow_); });
    quit_ = new QPushButton(tr("Quit"));
    connect(quit_, &QPushButton::clicked, this, [] { QCoreApplication::quit(); });

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(openDorvik_);
    bottom->addStretch();
    bottom->addWidget(quit_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->setSpacing(Style::sectionGap - Style::smallGap);
    layout->addWidget(makeVolumeRow());
    layout->addWidget(makeForecastRow());
    layout->addWidget(makeAutoCleanRow());
    layout->addWidget(removedApp_);
    layout->addWidget(quickClean_);
    layout->addLayout(bottom);

    BackgroundServices& background = state_.background();
    connect(&background, &BackgroundServices::volumeChanged, this, &MenuBarPanel::refresh);
    connect(&background, &BackgroundServices::changed, this, &MenuBarPanel::refresh);
    connect(&state_, &AppState::trendsChanged, this, &MenuBarPanel::refresh);
    refresh();
}

QWidget* MenuBarPanel::makeVolumeRow() {
    volumeRow_ = new QWidget;
    ring_ = new UsageRing(menuBarRingDiameter, "internaldrive");
    volumeName_ = Style::label({}, Style::TextRole::headline);
    freeLine_ = Style::label({}, Style::TextRole::secondary);
    purgeableLine_ = Style::label({}, Style::TextRole::caption);

    auto* text = new QVBoxLayout;
    text->setSpacing(Style::smallGap / 2);
    text->addStretch();
    text->addWidget(volumeName_);
    text->addWidget(freeLine_);
    text->addWidget(purgeableLine_);
    text->addStretch();
    auto* row = new QHBoxLayout(volumeRow_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Style::sectionGap - Style::smallGap);
    row->addWidget(ring_);
    row->addLayout(text, 1);
    return volumeRow_;
}

QWidget* MenuBarPanel::makeForecastRow() {
    forecastRow_ = new QWidget;
    forecastSymbol_ = new SymbolView("calendar.badge.clock", Style::smallIcon);
    forecastTitle_ = Style::label({}, Style::TextRole::body);
    forecastDetail_ = wrappedLabel(Style::TextRole::caption);
    openTrends_ = new QPushButton(tr("Open Trends"));
    connect(openTrends_, &QPushButton::clicked, this, [this] {
        act([this] {
            state_.setSection(AppSection::trends);
            openWindow_();
        });
    });

    // The button goes under the words, which have the row's width to wrap in.
    auto* text = new QVBoxLayout;
    text->setSpacing(Style::smallGap / 2);
    text->addWidget(forecastTitle_);
    text->addWidget(forecastDetail_);
    text->addSpacing(Style::smallGap);
    text->addWidget(openTrends_, 0, Qt::AlignLeft);
    auto* row = new QHBoxLayout(forecastRow_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Style::gap);
    row->addWidget(forecastSymbol_, 0, Qt::AlignTop);
    row->addLayout(text, 1);
    return forecastRow_;
}

QWidget* MenuBarPanel::makeAutoCleanRow() {
    autoCleanRow_ = new QWidget;
    autoCleanLine_ = wrappedLabel(Style::TextRole::secondary);
    auto* symbol = new SymbolView("calendar.badge.clock", Style::smallIcon);
    symbol->setTint(Style::Tint::secondary);
    auto* row = new QHBoxLayout(autoCleanRow_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Style::gap);
    row->addWidget(symbol);
    row->addWidget(autoCleanLine_, 1);
    return autoCleanRow_;
}

void MenuBarPanel::showRemovedApp(const QString& name, int64_t leftBytes) {
    removedApp_->setText(tr("%1 left %2 behind").arg(name, qtText(TextForms::size(leftBytes))));
    removedApp_->show();
}

void MenuBarPanel::hideRemovedApp() {
    removedApp_->hide();
}

void MenuBarPanel::refresh() {
    refreshVolume();
    refreshForecast();
    refreshAutoClean();
    refreshRemovedApp();
}

void MenuBarPanel::refreshRemovedApp() {
    if (const auto& removed = state_.removedApp().removedApp()) {
        showRemovedApp(qtText(removed->name), removed->itemsSize());
    } else {
        hideRemovedApp();
    }
}

void MenuBarPanel::refreshVolume() {
    const std::optional<VolumeInfo>& volume = state_.background().volume();
    volumeRow_->setVisible(volume.has_value());
    if (!volume) {
        return;
    }
    const double total = static_cast<double>(volume->total);
    const double used = total - static_cast<double>(std::max<int64_t>(volume->available, 0));
    ring_->setShare(total > 0 ? used / total : 0);
    ring_->setCentreText(qtText(TextForms::percent(used, total)));
    volumeName_->setText(shownText(volume->name));
    freeLine_->setText(tr("%1 free of %2")
                           .arg(qtText(TextForms::size(volume->available)),
                                qtText(TextForms::size(volume->total))));
    const int64_t purgeable = volume->purgeable();
    purgeableLine_->setVisible(purgeable > 0);
    purgeableLine_->setText(tr("%1 purgeable").arg(qtText(TextForms::size(purgeable))));
}

void MenuBarPanel::refreshForecast() {
    const std::optional<VolumeInfo>& volume = state_.background().volume();
    std::optional<ForecastSummary> summary;
    if (volume) {
        const double now = Dates::now();
        summary = forecastSummary(forecast(state_.trends().samples(), volume->available, now,
                                           ForecastLimits::lookbackDays),
                                  now);
    }
    forecastRow_->setVisible(summary.has_value());
    if (!summary) {
        return;
    }
    forecastSymbol_->setSymbol(summary->symbol);
    forecastSymbol_->setTint(styleTint(summary->tint));
    forecastTitle_->setText(shownText(summary->title));
    setWrappedText(forecastDetail_, shownText(summary->detail));
}

void MenuBarPanel::refreshAutoClean() {
    const BackgroundServices& background = state_.background();
    const std::optional<double> lastRun = background.lastAutoClean();
    autoCleanRow_->setVisible(lastRun.has_value());
    if (!lastRun) {
        return;
    }
    setWrappedText(autoCleanLine_,
                   tr("Auto-clean %1 · %2")
                       .arg(qtText(TextForms::relativeDate(*lastRun, Dates::now())),
                            qtText(TextForms::size(background.lastAutoCleanBytes()))));
}

void MenuBarPanel::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    // The numbers are current whenever the panel opens.
    state_.background().refreshVolume();
}

void MenuBarPanel::act(const std::function<void()>& action) {
    action();
    if (isWindow()) {
        hide();
    }
}

} // namespace dorvik
