#include "ui/pages/quickclean/IdleStage.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/CentredColumn.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/UsageRing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int columnWidth = 460;
constexpr int ringDiameter = 132;

QWidget* makePromise(std::string_view symbol, const QString& text) {
    auto* line = new QWidget;
    auto* icon = new SymbolView(symbol, Style::smallIcon);
    icon->setTint(Style::Tint::positive);
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(icon);
    layout->addWidget(Style::label(text, Style::TextRole::body), 1);
    return line;
}

} // namespace

IdleStage::IdleStage(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state), ring_(new UsageRing(ringDiameter, "wand.and.stars")),
      message_(Style::label({}, Style::TextRole::secondary)), scan_(new QPushButton(tr("Scan"))) {
    auto* column = new CentredColumn(this, columnWidth);
    QVBoxLayout* content = column->content();
    content->setSpacing(Style::sectionGap);
    content->addWidget(ring_, 0, Qt::AlignHCenter);
    auto* title = Style::label(tr("Free up space safely"), Style::TextRole::pageTitle);
    title->setAlignment(Qt::AlignCenter);
    content->addWidget(title);
    message_->setWordWrap(true);
    message_->setAlignment(Qt::AlignCenter);
    content->addWidget(message_);

    auto* promises = new QWidget;
    auto* promiseLines = new QVBoxLayout(promises);
    promiseLines->setContentsMargins(0, 0, 0, 0);
    promiseLines->setSpacing(Style::gap);
    promiseLines->addWidget(makePromise("checkmark.shield.fill", tr("Never touches the system")));
    promiseLines->addWidget(makePromise("arrow.uturn.backward.circle.fill",
                                        tr("You review before anything is cleaned")));
    promiseLines->addWidget(makePromise("lock.fill", tr("Everything stays on your Mac")));
    content->addWidget(promises, 0, Qt::AlignHCenter);

    Style::setProminent(scan_, true);
    scan_->setMinimumWidth(140);
    connect(scan_, &QPushButton::clicked, this, [this] { state_.quickClean().start(); });
    content->addWidget(scan_, 0, Qt::AlignHCenter);

    connect(&state_, &AppState::volumeChanged, this, &IdleStage::refreshVolume);
    refreshVolume();
}

void IdleStage::refreshVolume() {
    const QString promise =
        tr(". Dorvik only looks for files that macOS and your apps can recreate.");
    const auto& volume = state_.volume();
    if (!volume || volume->total <= 0) {
        ring_->setShare(0);
        message_->setText(promise.mid(2));
        return;
    }
    const auto total = static_cast<double>(volume->total);
    ring_->setShare((total - static_cast<double>(volume->available)) / total);
    message_->setText(tr("You have ") + qtText(TextForms::size(volume->available)) +
                      tr(" free of ") + qtText(TextForms::size(volume->total)) + promise);
}

} // namespace dorvik
