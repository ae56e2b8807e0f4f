#include "ui/widgets/PageHeader.h"

#include "ui/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace dorvik {

PageHeader::PageHeader(const QString& title, const QString& subtitle, QWidget* parent)
    : QWidget(parent), title_(Style::label(title, Style::TextRole::pageTitle)),
      subtitle_(Style::label(subtitle, Style::TextRole::secondary)), trailing_(new QHBoxLayout) {
    subtitle_->setWordWrap(true);
    subtitle_->setVisible(!subtitle.isEmpty());

    auto* texts = new QVBoxLayout;
    texts->setSpacing(Style::smallGap);
    texts->addWidget(title_);
    texts->addWidget(subtitle_);

    trailing_->setSpacing(Style::gap);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::sectionGap);
    layout->addLayout(texts, 1);
    layout->addLayout(trailing_);
    layout->setAlignment(trailing_, Qt::AlignTop | Qt::AlignRight);
}

void PageHeader::setSubtitle(const QString& subtitle) {
    subtitle_->setText(subtitle);
    subtitle_->setVisible(!subtitle.isEmpty());
}

void PageHeader::addTrailing(QWidget* widget) {
    trailing_->addWidget(widget);
}

QString PageHeader::title() const {
    return title_->text();
}

QString PageHeader::subtitle() const {
    return subtitle_->text();
}

} // namespace dorvik
