#include "ui/shell/AccessOnboardingView.h"

#include "state/AppState.h"
#include "ui/Style.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace dorvik {

namespace {

// A numbered step; the text may carry bold words.
QWidget* step(int number, const QString& richText) {
    auto* row = new QWidget;
    auto* numberLabel =
        Style::label(QString::number(number) + QLatin1Char('.'), Style::TextRole::headline);
    numberLabel->setFixedWidth(22);
    auto* text = new QLabel(richText);
    text->setTextFormat(Qt::RichText);
    text->setWordWrap(true);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(numberLabel, 0, Qt::AlignTop);
    layout->addWidget(text, 1);
    return row;
}

} // namespace

AccessOnboardingView::AccessOnboardingView(AppState& state, QWidget* parent)
    : QDialog(parent, Qt::Widget), state_(state),
      scanWithoutAccess_(new QPushButton(tr("Scan Without Access"))) {
    auto* badge = new SymbolView("externaldrive.fill.badge.checkmark", Style::badgeIcon);
    badge->setTint(Style::Tint::accent);
    badge->setBadge(true);
    auto* heading = Style::label(tr("Let Dorvik see your whole disk"), Style::TextRole::pageTitle);
    heading->setAlignment(Qt::AlignHCenter);
    auto* text = Style::label(
        tr("macOS protects folders like Mail, Messages, Safari and app data. Without this "
           "permission sizes are incomplete and macOS will ask you folder by folder."),
        Style::TextRole::secondary);
    text->setAlignment(Qt::AlignHCenter);
    text->setWordWrap(true);

    auto* privacy = new QHBoxLayout;
    privacy->setSpacing(Style::gap);
    privacy->addStretch();
    auto* shield = new SymbolView("lock.shield.fill", Style::smallIcon);
    shield->setTint(Style::Tint::secondary);
    privacy->addWidget(shield);
    privacy->addWidget(
        Style::label(tr("Dorvik only reads names and sizes. Nothing leaves your Mac."),
                     Style::TextRole::caption));
    privacy->addStretch();

    // "Open Settings" would open the system's privacy pane, which Linux does not have.
    scanWithoutAccess_->setDefault(true);
    Style::setProminent(scanWithoutAccess_, true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(scanWithoutAccess_);
    connect(scanWithoutAccess_, &QPushButton::clicked, this, [this] {
        state_.settings().setAccessOnboardingSkipped(true);
        state_.setShowAccessOnboarding(false);
        state_.startScan();
    });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 28, 28, 20);
    layout->setSpacing(Style::gap);
    layout->addWidget(badge, 0, Qt::AlignHCenter);
    layout->addSpacing(Style::gap);
    layout->addWidget(heading);
    layout->addWidget(text);
    layout->addSpacing(Style::gap);
    layout->addWidget(step(1, tr("Click “Open Settings”.")));
    layout->addWidget(
        step(2, tr("Under “Full Disk Access”, turn on <b>Dorvik</b> (or add it with +).")));
    layout->addWidget(step(3, tr("If macOS asks, choose “Quit &amp; Reopen”.")));
    layout->addSpacing(Style::gap);
    layout->addLayout(privacy);
    layout->addSpacing(Style::sectionGap);
    layout->addLayout(buttons);
}

void AccessOnboardingView::reject() {
    state_.setShowAccessOnboarding(false);
    QDialog::reject();
}

} // namespace dorvik
