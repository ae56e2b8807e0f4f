#include "ui/widgets/RowButton.h"

#include "ui/Style.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QPainter>

namespace dorvik {

RowButton::RowButton(bool alwaysChevron, QWidget* parent)
    : QAbstractButton(parent), content_(new QHBoxLayout),
      chevron_(new SymbolView("chevron.compact.right", Style::smallIcon - 2)),
      alwaysChevron_(alwaysChevron) {
    setCursor(Qt::PointingHandCursor);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Style::gap, Style::gap - 2, Style::gap, Style::gap - 2);
    layout->setSpacing(Style::gap + 2);
    content_->setSpacing(Style::gap + 2);
    layout->addLayout(content_, 1);
    chevron_->setTint(Style::Tint::secondary);
    chevron_->setVisible(alwaysChevron_);
    // Held in place while hidden, so that the row does not shift under the pointer.
    QSizePolicy kept = chevron_->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    chevron_->setSizePolicy(kept);
    layout->addWidget(chevron_);
}

QSize RowButton::sizeHint() const {
    return layout()->sizeHint();
}

QSize RowButton::minimumSizeHint() const {
    return layout()->minimumSize();
}

bool RowButton::hasHeightForWidth() const {
    return layout()->hasHeightForWidth();
}

int RowButton::heightForWidth(int width) const {
    return layout()->totalHeightForWidth(width);
}

void RowButton::paintEvent(QPaintEvent*) {
    if (!underMouse() && !isDown()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Style::faded(palette().color(QPalette::WindowText), isDown() ? 0.1 : 0.05));
    painter.drawRoundedRect(rect(), Style::rowRadius, Style::rowRadius);
}

void RowButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    chevron_->setVisible(true);
    update();
}

void RowButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    chevron_->setVisible(alwaysChevron_);
    update();
}

} // namespace dorvik
