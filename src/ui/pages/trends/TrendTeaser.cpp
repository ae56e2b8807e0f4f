#include "ui/pages/trends/TrendTeaser.h"

#include "base/PathNames.h"
#include "state/AppState.h"
#include "trends/TrendTexts.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/RowButton.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace dorvik {

TrendTeaser::TrendTeaser(AppState& state, QWidget* parent)
    : QFrame(parent), state_(state), text_(Style::label({}, Style::TextRole::body)) {
    Style::makeCard(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::smallGap, Style::smallGap, Style::smallGap, Style::smallGap);
    auto* row = new RowButton(true);
    auto* icon = new SymbolView("chart.line.uptrend.xyaxis", Style::smallIcon + 4);
    icon->setTint(Style::Tint::accent);
    row->content()->addWidget(icon);
    row->content()->addWidget(text_, 1);
    row->content()->addWidget(
        Style::label(shownText(TrendTexts::teaserAction), Style::TextRole::secondary));
    layout->addWidget(row);
    connect(row, &RowButton::clicked, this, &TrendTeaser::press);
}

void TrendTeaser::refresh(double now) {
    std::optional<std::string> text;
    if (state_.scan()) {
        text = TrendTexts::teaserText(
            state_.trends().history(canonicalPath(state_.scan()->root->name)), now);
    }
    setVisible(text.has_value());
    text_->setText(text ? qtText(*text) : QString());
}

void TrendTeaser::press() {
    state_.setSection(AppSection::trends);
}

} // namespace dorvik
