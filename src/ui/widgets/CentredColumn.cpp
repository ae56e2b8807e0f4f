#include "ui/widgets/CentredColumn.h"

#include "ui/Style.h"

#include <QEvent>
#include <QVBoxLayout>

namespace dorvik {

CentredColumn::CentredColumn(QWidget* page, int width) : content_(new QVBoxLayout(this)) {
    setFixedWidth(width);
    content_->setContentsMargins(0, 0, 0, 0);
    content_->setSpacing(Style::gap);
    auto* outer = new QVBoxLayout(page);
    outer->addStretch(2);
    outer->addWidget(this, 0, Qt::AlignHCenter);
    outer->addStretch(3);
}

bool CentredColumn::event(QEvent* event) {
    // A line that came or went while the column was hidden asked nothing then: measure on show.
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show) {
        setFixedHeight(content_->hasHeightForWidth() ? content_->heightForWidth(width())
                                                     : content_->sizeHint().height());
    }
    return QWidget::event(event);
}

} // namespace dorvik
