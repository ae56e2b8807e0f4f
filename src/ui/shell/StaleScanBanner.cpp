#include "ui/shell/StaleScanBanner.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace dorvik {

StaleScanBanner::StaleScanBanner(AppState& state, QWidget* parent)
    : QFrame(parent), state_(state), headline_(Style::label({}, Style::TextRole::headline)),
      rescan_(new QPushButton(Symbols::icon("arrow.clockwise"), tr("Rescan"))) {
    Style::makeCard(this);
    auto* symbol = new SymbolView("clock.arrow.circlepath", Style::headlineIcon);
    symbol->setTint(Style::Tint::warning);
    auto* text =
        Style::label(tr("Sizes may have changed since then. Rescan to see your disk as it is now."),
                     Style::TextRole::secondary);
    text->setWordWrap(true);

    const LeadingSymbolLayout layout =
        layOutWithLeadingSymbol(this, symbol, Style::cardPadding, Style::cardPadding);
    layout.column->addWidget(headline_);
    layout.column->addWidget(text);
    layout.row->setAlignment(symbol, Qt::AlignVCenter);
    layout.row->addWidget(rescan_);

    connect(rescan_, &QPushButton::clicked, this, [this] { state_.startScan(); });
    auto follow = [this] { rescan_->setEnabled(!state_.isScanning()); };
    connect(&state, &AppState::isScanningChanged, this, follow);
    follow();
}

void StaleScanBanner::setDate(double date, double now) {
    headline_->setText(tr("This scan is from %1").arg(qtText(TextForms::relativeDate(date, now))));
}

} // namespace dorvik
