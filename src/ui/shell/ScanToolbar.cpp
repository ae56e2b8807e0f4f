#include "ui/shell/ScanToolbar.h"

#include "base/Dates.h"
#include "base/TextForms.h"
#include "platform/HomeDirectory.h"
#include "state/AppState.h"
#include "state/ScanStaleness.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/ElidedLabel.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int progressWidth = 260;
constexpr int menuButtonWidth = 26;
constexpr std::chrono::minutes staleCheckInterval{1};

} // namespace

ScanToolbar::ScanToolbar(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state), stack_(new QStackedLayout(this)) {
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    stack_->addWidget(makeScanButton());
    stack_->addWidget(makeProgress());
    connect(&state, &AppState::isScanningChanged, this, &ScanToolbar::refresh);
    connect(&state, &AppState::progressChanged, this, &ScanToolbar::refresh);
    connect(&state, &AppState::scanChanged, this, &ScanToolbar::refresh);
    connect(&state, &AppState::scanTargetChanged, this, &ScanToolbar::refresh);
    connect(&staleCheck_, &QTimer::timeout, this, &ScanToolbar::refresh);
    staleCheck_.start(staleCheckInterval);
    refresh();
}

bool ScanToolbar::showsProgress() const {
    return stack_->currentIndex() == 1;
}

QWidget* ScanToolbar::makeProgress() {
    auto* block = new QWidget;
    progressLine_ = Style::label({}, Style::TextRole::body);
    currentPath_ = new ElidedLabel;
    Style::setTextRole(currentPath_, Style::TextRole::caption);
    auto* lines = new QWidget;
    lines->setFixedWidth(progressWidth);
    auto* linesLayout = new QVBoxLayout(lines);
    linesLayout->setContentsMargins(0, 0, 0, 0);
    linesLayout->setSpacing(0);
    linesLayout->addWidget(progressLine_);
    linesLayout->addWidget(currentPath_);

    stopButton_ = new QPushButton(tr("Stop"));
    connect(stopButton_, &QPushButton::clicked, &state_, &AppState::cancelScan);
    auto* layout = new QHBoxLayout(block);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(lines);
    layout->addWidget(stopButton_);
    return block;
}

QWidget* ScanToolbar::makeScanButton() {
    // A button with a primary action and a narrow second half that opens the menu of targets.
    scanButton_ = new QPushButton;
    Style::setSegment(scanButton_, Style::Segment::first);
    connect(scanButton_, &QPushButton::clicked, this, [this] { state_.startScan(); });

    scanMenu_ = new QMenu(this);
    scanMenu_->addAction(tr("Entire Disk"), this,
                         [this] { state_.startScan(ScanTarget::wholeDisk()); });
    scanMenu_->addAction(tr("Home Folder"), this, [this] { state_.startScan(ScanTarget::home()); });
    scanMenu_->addAction(tr("Choose Folder…"), this, &ScanToolbar::chooseFolder);
    menuButton_ = new QPushButton;
    Style::setSegment(menuButton_, Style::Segment::menu);
    menuButton_->setMenu(scanMenu_);
    menuButton_->setFixedWidth(menuButtonWidth);

    auto* control = new QWidget;
    auto* layout = new QHBoxLayout(control);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addStretch();
    layout->addWidget(scanButton_);
    layout->addWidget(menuButton_);
    return control;
}

void ScanToolbar::chooseFolder() {
    QFileDialog dialog(window());
    dialog.setDirectory(qtText(platform::homeDirectory()));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setLabelText(QFileDialog::Accept, tr("Scan"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    state_.startScan(ScanTarget::folder(stdText(dialog.selectedFiles().constFirst())));
}

void ScanToolbar::refresh() {
    if (state_.isScanning()) {
        const ScanProgressSnapshot& progress = state_.progress();
        progressLine_->setText(filesText(progress.files) + QStringLiteral(" · ") +
                               qtText(TextForms::size(progress.bytes)));
        currentPath_->setText(nameText(progress.currentPath));
        stack_->setCurrentIndex(1);
        return;
    }
    scanButton_->setText(state_.scan() ? tr("Rescan") : tr("Scan"));
    scanButton_->setToolTip(tr("Scan: %1").arg(shownText(state_.scanTarget().title())));
    const bool stale = isScanStale(state_.scan(), state_.isScanning(), Dates::now());
    Style::setProminent(scanButton_, stale);
    Style::setProminent(menuButton_, stale);
    scanButton_->setIcon(stale ? Symbols::icon("arrow.clockwise", Qt::white)
                               : Symbols::icon("arrow.clockwise"));
    stack_->setCurrentIndex(0);
}

} // namespace dorvik
