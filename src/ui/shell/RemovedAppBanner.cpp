#include "ui/shell/RemovedAppBanner.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/SymbolView.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <set>

namespace dorvik {

QString removedAppHeadline(const RemovedApp& removed) {
    return QObject::tr("%1 was removed, but left %2 behind")
        .arg(nameText(removed.name), qtText(TextForms::size(removed.itemsSize())));
}

QString removedAppLocations(const RemovedApp& removed) {
    std::set<QString> labels;
    for (const RelatedItem& item : removed.items) {
        labels.insert(shownText(item.label));
    }
    QStringList joined(labels.begin(), labels.end());
    return joined.join(QStringLiteral(" · "));
}

RemovedAppBanner::RemovedAppBanner(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state), headline_(Style::label({}, Style::TextRole::headline)),
      caption_(Style::label({}, Style::TextRole::caption)), notNow_(new QPushButton(tr("Not Now"))),
      review_(new QPushButton(tr("Review and Remove…"))) {
    // The card stands on the pages' ground, off the window's edges as their content does.
    setProperty("page", true);
    setAttribute(Qt::WA_StyledBackground);
    auto* card = new QFrame;
    Style::makeCard(card);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(Style::pageMargin, Style::sectionGap, Style::pageMargin, 0);
    outer->addWidget(card);

    auto* symbol = new SymbolView("puzzlepiece.extension.fill", Style::headlineIcon);
    symbol->setTint(Style::Tint::accent);
    headline_->setWordWrap(true);
    caption_->setWordWrap(true);
    const LeadingSymbolLayout layout =
        layOutWithLeadingSymbol(card, symbol, Style::cardPadding, Style::cardPadding);
    layout.column->addWidget(headline_);
    layout.column->addWidget(caption_);
    layout.row->setAlignment(symbol, Qt::AlignVCenter);
    layout.row->addWidget(notNow_);
    layout.row->addWidget(review_);
    Style::setProminent(review_, true);

    connect(notNow_, &QPushButton::clicked, this, [this] { state_.removedApp().dismiss(); });
    connect(review_, &QPushButton::clicked, this,
            [this] { state_.removedApp().reviewAndRemove(); });
    connect(&state.removedApp(), &RemovedAppState::removedAppChanged, this,
            &RemovedAppBanner::follow);
    follow();
}

void RemovedAppBanner::follow() {
    const auto& removed = state_.removedApp().removedApp();
    setVisible(removed.has_value());
    if (removed) {
        headline_->setText(removedAppHeadline(*removed));
        caption_->setText(removedAppLocations(*removed));
    }
}

} // namespace dorvik
