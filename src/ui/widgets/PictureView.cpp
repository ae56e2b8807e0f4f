#include "ui/widgets/PictureView.h"

#include <QPainter>

namespace dorvik {

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
    setMinimumSize(1, 1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureView::setPicture(QImage picture) {
    picture_ = std::move(picture);
    updateGeometry();
    update();
}

QRect PictureView::shownRect() const {
    if (picture_.isNull()) {
        return {};
    }
    // The picture's own pixels at the screen's density, unless that is more than there is room
    // for.
    QSizeF size = QSizeF(picture_.size()) / devicePixelRatioF();
    if (size.width() > width() || size.height() > height()) {
        size.scale(QSizeF(this->size()), Qt::KeepAspectRatio);
    }
    const QSize whole(qMax(1, qRound(size.width())), qMax(1, qRound(size.height())));
    return {QPoint((width() - whole.width()) / 2, (height() - whole.height()) / 2), whole};
}

QSize PictureView::sizeHint() const {
    return picture_.isNull() ? QSize(320, 240) : picture_.size() / devicePixelRatioF();
}

void PictureView::paintEvent(QPaintEvent*) {
    if (picture_.isNull()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(shownRect(), picture_);
}

} // namespace dorvik
