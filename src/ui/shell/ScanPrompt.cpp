#include "ui/shell/ScanPrompt.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/shell/FullDiskAccessBanner.h"
#include "ui/widgets/CentredColumn.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/ScanningRing.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int ringDiameter = 150;
constexpr int spinnerDiameter = 28;
constexpr int textWidth = 440; // the invitation's column

} // namespace

ScanPrompt::ScanPrompt(AppState& state, const QString& title, const QString& message,
                       QWidget* parent)
    : QWidget(parent), state_(state), stack_(new QStackedLayout(this)) {
    stack_->addWidget(makeRestoring());
    stack_->addWidget(makeScanning());
    stack_->addWidget(makeInvitation(title, message));
    connect(&state, &AppState::isRestoringScanChanged, this, &ScanPrompt::refresh);
    connect(&state, &AppState::isScanningChanged, this, &ScanPrompt::refresh);
    connect(&state, &AppState::progressChanged, this, &ScanPrompt::refresh);
    connect(&state, &AppState::hasFullDiskAccessChanged, this, &ScanPrompt::refresh);
    refresh();
}

ScanPrompt::Showing ScanPrompt::showing() const {
    return static_cast<Showing>(stack_->currentIndex());
}

QWidget* ScanPrompt::makeRestoring() {
    auto* page = new QWidget;
    QVBoxLayout* column = (new CentredColumn(page, textWidth))->content();
    column->addWidget(new ScanningRing(spinnerDiameter), 0, Qt::AlignHCenter);
    auto* text = Style::label(tr("Loading your last scan…"), Style::TextRole::secondary);
    column->addWidget(text, 0, Qt::AlignHCenter);
    return page;
}

QWidget* ScanPrompt::makeScanning() {
    auto* page = new QWidget;
    QVBoxLayout* column = (new CentredColumn(page, textWidth))->content();
    ring_ = new ScanningRing(ringDiameter);
    currentPath_ = new ElidedLabel;
    currentPath_->setAlignment(Qt::AlignHCenter);
    Style::setTextRole(currentPath_, Style::TextRole::caption);
    column->addWidget(ring_, 0, Qt::AlignHCenter);
    column->addSpacing(Style::gap);
    column->addWidget(currentPath_);
    return page;
}

QWidget* ScanPrompt::makeInvitation(const QString& title, const QString& message) {
    auto* page = new QWidget;
    QVBoxLayout* column = (new CentredColumn(page, textWidth))->content();

    auto* badge = new SymbolView("internaldrive.fill", Style::badgeIcon + 16);
    badge->setTint(Style::Tint::accent);
    badge->setBadge(true);
    auto* heading = Style::label(title, Style::TextRole::pageTitle);
    heading->setAlignment(Qt::AlignHCenter);
    heading->setWordWrap(true);
    auto* text = Style::label(message, Style::TextRole::secondary);
    text->setAlignment(Qt::AlignHCenter);
    text->setWordWrap(true);

    auto* wholeDisk = new QPushButton(tr("Scan Entire Disk"));
    Style::setProminent(wholeDisk, true);
    wholeDisk->setDefault(true);
    auto* home = new QPushButton(tr("Home Folder Only"));
    connect(wholeDisk, &QPushButton::clicked, this,
            [this] { state_.startScan(ScanTarget::wholeDisk()); });
    connect(home, &QPushButton::clicked, this, [this] { state_.startScan(ScanTarget::home()); });
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Style::gap);
    buttons->addStretch();
    buttons->addWidget(wholeDisk);
    buttons->addWidget(home);
    buttons->addStretch();

    accessBanner_ = new FullDiskAccessBanner(state_);

    column->addWidget(badge, 0, Qt::AlignHCenter);
    column->addSpacing(Style::gap);
    column->addWidget(heading);
    column->addWidget(text);
    column->addSpacing(Style::gap);
    column->addLayout(buttons);
    column->addSpacing(Style::sectionGap);
    column->addWidget(accessBanner_);
    return page;
}

void ScanPrompt::refresh() {
    if (state_.isRestoringScan()) {
        stack_->setCurrentIndex(static_cast<int>(Showing::restoring));
    } else if (state_.isScanning()) {
        const ScanProgressSnapshot& progress = state_.progress();
        ring_->setProgressText(filesText(progress.files));
        ring_->setDetail(qtText(TextForms::size(progress.bytes)));
        currentPath_->setText(nameText(progress.currentPath));
        stack_->setCurrentIndex(static_cast<int>(Showing::scanning));
    } else {
        accessBanner_->setVisible(!state_.hasFullDiskAccess());
        stack_->setCurrentIndex(static_cast<int>(Showing::invitation));
    }
}

} // namespace dorvik
