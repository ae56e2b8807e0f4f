#include "ui/widgets/StatTile.h"

#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace dorvik {

StatTile::StatTile(const QString& title, std::string_view symbol, Style::Tint tint,
                   const QString& caption, QWidget* parent)
    : QFrame(parent), title_(Style::label(title, Style::TextRole::secondary)),
      value_(Style::label({}, Style::TextRole::pageTitle)) {
    Style::makeCard(this);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->setSpacing(Style::smallGap);

    auto* top = new QHBoxLayout;
    top->setSpacing(Style::gap);
    auto* icon = new SymbolView(symbol, Style::smallIcon + 2);
    icon->setTint(tint);
    top->addWidget(icon);
    top->addWidget(title_, 1);
    layout->addLayout(top);
    layout->addWidget(value_);
    auto* captionLabel = Style::label(caption, Style::TextRole::caption);
    captionLabel->setWordWrap(true);
    layout->addWidget(captionLabel);
    caption_ = captionLabel;
}

void StatTile::setValue(const QString& value) {
    value_->setText(value);
}

void StatTile::setCaption(const QString& caption) {
    caption_->setText(caption);
}

QString StatTile::value() const {
    return value_->text();
}

QString StatTile::title() const {
    return title_->text();
}

} // namespace dorvik
