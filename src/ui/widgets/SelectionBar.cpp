#include "ui/widgets/SelectionBar.h"

#include "base/TextForms.h"
#include "ui/QtText.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace dorvik {

SelectionBar::SelectionBar(const QString& actionTitle, QWidget* parent)
    : QFrame(parent), summary_(Style::label({}, Style::TextRole::body)),
      secondary_(new QPushButton), action_(new QPushButton(actionTitle)) {
    Style::makeCard(this);
    Style::setProminent(action_, true);
    secondary_->hide();
    auto* clear = new QPushButton(tr("Deselect"));
    connect(clear, &QPushButton::clicked, this, [this] {
        if (onClear) {
            onClear();
        }
    });
    connect(secondary_, &QPushButton::clicked, this, [this] {
        if (onSecondary) {
            onSecondary();
        }
    });
    connect(action_, &QPushButton::clicked, this, [this] {
        if (onAction) {
            onAction();
        }
    });

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::gap, Style::cardPadding, Style::gap);
    layout->setSpacing(Style::gap);
    layout->addWidget(summary_);
    layout->addWidget(clear);
    layout->addStretch();
    layout->addWidget(secondary_);
    layout->addWidget(action_);
    hide();
}

void SelectionBar::setSelection(int64_t count, int64_t size) {
    setVisible(count >= 1);
    summary_->setText(tr("%1 selected").arg(qtText(TextForms::count(count))) +
                      QStringLiteral("  ·  ") + qtText(TextForms::size(size)));
}

void SelectionBar::setSecondary(const QString& title, const QString& help) {
    secondary_->setText(title);
    secondary_->setToolTip(help);
    secondary_->setVisible(!title.isEmpty());
}

} // namespace dorvik
