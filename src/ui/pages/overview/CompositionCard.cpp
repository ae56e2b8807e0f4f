#include "ui/pages/overview/CompositionCard.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/RowButton.h"
#include "ui/widgets/SymbolView.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int legendColumns = 2;

QColor segmentColour(const CompositionSegment& segment, const QPalette& palette) {
    return segment.bucket ? Style::hex(info(*segment.bucket).colour)
                          : Style::faded(Style::secondaryText(palette), 0.45);
}

QString shareText(int64_t size, int64_t total) {
    return qtText(TextForms::percent(static_cast<double>(size), static_cast<double>(total)));
}

// A segment's line of the legend: its colour, its name, its size and its share.
void fillLegendLine(QHBoxLayout* line, const CompositionSegment& segment, int64_t total) {
    auto* dot = new SymbolView(segment.bucket ? "circle.fill" : "apple.logo",
                               segment.bucket ? 10 : Style::smallIcon);
    if (segment.bucket) {
        dot->setColour(Style::hex(info(*segment.bucket).colour));
    } else {
        dot->setTint(Style::Tint::secondary);
    }
    line->addWidget(dot);
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addWidget(
        Style::label(shownText(segment.bucket ? info(*segment.bucket).displayName : unreachedTitle),
                     Style::TextRole::body));
    if (!segment.bucket) {
        auto* detail = Style::label(shownText(unreachedDetail), Style::TextRole::caption);
        detail->setWordWrap(true);
        words->addWidget(detail);
    }
    line->addLayout(words, 1);
    line->addWidget(Style::label(qtText(TextForms::size(segment.size)), Style::TextRole::body));
    auto* share = Style::label(shareText(segment.size, total), Style::TextRole::secondary);
    share->setMinimumWidth(44);
    share->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    line->addWidget(share);
}

} // namespace

SegmentedBar::SegmentedBar(QWidget* parent) : QWidget(parent) {
    setFixedHeight(22);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SegmentedBar::setComposition(DiskComposition composition) {
    composition_ = std::move(composition);
    update();
}

void SegmentedBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath clip;
    clip.addRoundedRect(QRectF(rect()), 6, 6);
    painter.setClipPath(clip);
    painter.fillRect(rect(), Style::separator(palette()));
    if (composition_.total <= 0) {
        return;
    }
    double left = 0;
    const double width = rect().width();
    for (const CompositionSegment& segment : composition_.segments) {
        const double share =
            static_cast<double>(segment.size) / static_cast<double>(composition_.total) * width;
        painter.fillRect(QRectF(left, 0, share, height()), segmentColour(segment, palette()));
        left += share;
        // A hairline of the card between neighbours keeps thin segments apart.
        painter.fillRect(QRectF(left - 0.5, 0, 1, height()), Style::card(palette()));
    }
}

CompositionCard::CompositionCard(AppState& state, QWidget* parent)
    : QFrame(parent), state_(state), bar_(new SegmentedBar), legend_(new QGridLayout) {
    Style::makeCard(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->setSpacing(Style::gap + 4);
    layout->addWidget(Style::label(tr("Where your space goes"), Style::TextRole::headline));
    layout->addWidget(bar_);
    legend_->setHorizontalSpacing(Style::sectionGap);
    legend_->setVerticalSpacing(0);
    layout->addLayout(legend_);
}

void CompositionCard::refresh() {
    for (QWidget* row : legendRows_) {
        delete row;
    }
    legendRows_.clear();
    composition_ = state_.scan() ? diskComposition(state_.scan()->bucketTotals, state_.volume())
                                 : DiskComposition{};
    bar_->setComposition(composition_);
    int index = 0;
    for (const CompositionSegment& segment : composition_.segments) {
        QWidget* row = nullptr;
        if (segment.bucket) {
            auto* button = new RowButton;
            button->setToolTip(tr("Show these files"));
            fillLegendLine(button->content(), segment, composition_.total);
            connect(button, &RowButton::clicked, this, [this, bucket = *segment.bucket] {
                FileFilter filter;
                filter.bucket = bucket;
                state_.setLargeFilter(filter);
                state_.setSection(AppSection::large);
            });
            row = button;
        } else {
            // The unreached space is nothing the scan can list: a plain line across the card.
            row = new QWidget;
            auto* line = new QHBoxLayout(row);
            line->setContentsMargins(Style::gap, Style::gap, Style::gap + Style::smallIcon, 0);
            line->setSpacing(Style::gap + 2);
            fillLegendLine(line, segment, composition_.total);
            index += index % legendColumns; // starts a line of its own
            legend_->addWidget(row, index / legendColumns, 0, 1, legendColumns);
            legendRows_.push_back(row);
            break;
        }
        legend_->addWidget(row, index / legendColumns, index % legendColumns);
        legendRows_.push_back(row);
        ++index;
    }
}

} // namespace dorvik
