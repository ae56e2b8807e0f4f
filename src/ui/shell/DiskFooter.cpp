#include "ui/shell/DiskFooter.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/UsageBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr double lowFreeShare = 0.1;

} // namespace

bool isLowOnSpace(const VolumeInfo& volume) {
    return volume.total > 0 &&
           static_cast<double>(volume.available) / static_cast<double>(volume.total) < lowFreeShare;
}

DiskFooter::DiskFooter(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state), name_(Style::label({}, Style::TextRole::body)),
      free_(Style::label({}, Style::TextRole::caption)), used_(new UsageBar) {
    auto* line = new QHBoxLayout;
    line->setSpacing(Style::gap);
    line->addWidget(new SymbolView("internaldrive.fill", Style::smallIcon));
    line->addWidget(name_, 1);
    line->addWidget(free_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::sectionGap, Style::gap, Style::sectionGap, Style::sectionGap);
    layout->setSpacing(Style::gap);
    layout->addLayout(line);
    layout->addWidget(used_);

    connect(&state, &AppState::volumeChanged, this, &DiskFooter::refresh);
    refresh();
}

void DiskFooter::refresh() {
    const std::optional<VolumeInfo>& volume = state_.volume();
    setVisible(volume.has_value());
    if (!volume) {
        return;
    }
    name_->setText(shownText(volume->name));
    free_->setText(tr("%1 free").arg(qtText(TextForms::size(volume->available))));
    const double total = static_cast<double>(volume->total);
    used_->setShare(total > 0 ? (total - static_cast<double>(volume->available)) / total : 0);
    used_->setTint(isLowOnSpace(*volume) ? Style::Tint::warning : Style::Tint::accent);
}

} // namespace dorvik
