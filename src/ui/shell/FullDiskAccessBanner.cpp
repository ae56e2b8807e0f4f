#include "ui/shell/FullDiskAccessBanner.h"

#include "state/AppState.h"
#include "ui/Style.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace dorvik {

FullDiskAccessBanner::FullDiskAccessBanner(AppState& state, QWidget* parent) : QFrame(parent) {
    Style::makeCard(this);
    auto* symbol = new SymbolView("lock.shield.fill", Style::headlineIcon);
    symbol->setTint(Style::Tint::warning);

    auto* text = Style::label(
        tr("Without it, macOS hides folders like Mail, Safari and app containers from Dorvik, so "
           "sizes come out incomplete. Dorvik never sends anything off your Mac."),
        Style::TextRole::secondary);
    text->setWordWrap(true);

    // The button that opens the system's privacy settings has nothing to open on Linux.
    auto* done = new QPushButton(tr("I’ve Done It"));
    connect(done, &QPushButton::clicked, &state, &AppState::refreshFullDiskAccess);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(done);

    QVBoxLayout* lines =
        layOutWithLeadingSymbol(this, symbol, Style::cardPadding, Style::cardPadding).column;
    lines->addWidget(Style::label(tr("Grant Full Disk Access"), Style::TextRole::headline));
    lines->addWidget(text);
    lines->addLayout(buttons);
}

} // namespace dorvik
