#include "ui/pages/Page.h"

#include "ui/Style.h"
#include "ui/widgets/PageHeader.h"

#include <QVBoxLayout>

namespace dorvik {

Page::Page(const QString& title, const QString& subtitle, QWidget* parent)
    : QWidget(parent), header_(new PageHeader(title, subtitle)), body_(new QVBoxLayout) {
    setProperty("page", true);
    setAttribute(Qt::WA_StyledBackground, true);
    body_->setContentsMargins(0, 0, 0, 0);
    body_->setSpacing(Style::sectionGap);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::pageMargin, Style::pageMargin - 4, Style::pageMargin,
                               Style::pageMargin);
    layout->setSpacing(Style::sectionGap + 4);
    layout->addWidget(header_);
    layout->addLayout(body_, 1);
}

} // namespace dorvik
