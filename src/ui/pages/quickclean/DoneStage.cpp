#include "ui/pages/quickclean/DoneStage.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/CentredColumn.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int columnWidth = 460;

QLabel* centredLine(Style::TextRole role) {
    auto* line = Style::label({}, role);
    line->setAlignment(Qt::AlignCenter);
    line->setWordWrap(true);
    return line;
}

} // namespace

DoneStage::DoneStage(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state), headline_(centredLine(Style::TextRole::pageTitle)),
      trash_(centredLine(Style::TextRole::secondary)),
      leftOver_(centredLine(Style::TextRole::secondary)),
      freeSpace_(centredLine(Style::TextRole::secondary)) {
    auto* column = new CentredColumn(this, columnWidth);
    QVBoxLayout* content = column->content();
    content->setSpacing(Style::gap);
    auto* symbol = new SymbolView("checkmark.circle.fill", Style::badgeIcon);
    symbol->setTint(Style::Tint::positive);
    content->addWidget(symbol, 0, Qt::AlignHCenter);
    content->addSpacing(Style::gap);
    content->addWidget(headline_);
    content->addWidget(trash_);
    content->addWidget(leftOver_);
    content->addWidget(freeSpace_);
    content->addSpacing(Style::sectionGap);

    auto* elsewhere = new QPushButton(tr("See What Else Is Using Space"));
    Style::setProminent(elsewhere, true);
    connect(elsewhere, &QPushButton::clicked, this,
            [this] { state_.quickClean().seeWhatElseIsUsingSpace(); });
    auto* startOver = new QPushButton(tr("Start Over"));
    connect(startOver, &QPushButton::clicked, this, [this] { state_.quickClean().startOver(); });
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Style::gap);
    buttons->addStretch();
    buttons->addWidget(startOver);
    buttons->addWidget(elsewhere);
    buttons->addStretch();
    content->addLayout(buttons);

    connect(&state_.quickClean(), &QuickCleanState::lastReportChanged, this, &DoneStage::refresh);
    connect(&state_, &AppState::volumeChanged, this, &DoneStage::refresh);
    refresh();
}

void DoneStage::refresh() {
    const std::optional<DeletionReport>& report = state_.quickClean().lastReport();
    const DeletionReport shown = report.value_or(DeletionReport{});
    headline_->setText(qtText(TextForms::size(shown.freed + shown.movedToTrash)) + tr(" cleaned"));
    trash_->setVisible(shown.movedToTrash >= 1);
    trash_->setText(qtText(TextForms::size(shown.movedToTrash)) +
                    tr(" is in the Trash until you empty it."));
    leftOver_->setVisible(!shown.failures.empty());
    leftOver_->setText(tr("%1 item(s) were in use or protected and were left untouched.")
                           .arg(static_cast<qlonglong>(shown.failures.size())));
    const auto& volume = state_.volume();
    freeSpace_->setVisible(volume.has_value());
    if (volume) {
        freeSpace_->setText(tr("You now have ") + qtText(TextForms::size(volume->available)) +
                            tr(" free."));
    }
}

} // namespace dorvik
