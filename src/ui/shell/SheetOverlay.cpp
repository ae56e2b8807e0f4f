#include "ui/shell/SheetOverlay.h"

#include "ui/Style.h"

#include <QDialog>
#include <QEvent>
#include <QGraphicsDropShadowEffect>
#include <QPainter>

namespace dorvik {

namespace {

constexpr int edgeMargin = 32; // the least room kept between a sheet and the window's edges
constexpr int shadowBlur = 40;

} // namespace

SheetOverlay::SheetOverlay(QWidget* covered, QWidget* parent) : QWidget(parent), covered_(covered) {
    parent->installEventFilter(this);
    hide();
}

void SheetOverlay::present(QDialog* sheet, int width) {
    dismiss();
    sheet_ = sheet;
    width_ = width;
    sheet->setParent(this, Qt::Widget);
    Style::makeCard(sheet);
    auto* shadow = new QGraphicsDropShadowEffect(sheet);
    shadow->setBlurRadius(shadowBlur);
    shadow->setOffset(0, 8);
    shadow->setColor(QColor(0, 0, 0, 90));
    sheet->setGraphicsEffect(shadow);
    connect(sheet, &QDialog::finished, this, [this, sheet] {
        if (sheet_ == sheet) {
            dismiss();
            emit sheetClosed();
        }
    });
    covered_->setEnabled(false);
    setGeometry(parentWidget()->rect());
    show();
    raise();
    sheet->show();
    place();
    sheet->setFocus();
}

void SheetOverlay::dismiss() {
    if (sheet_) {
        QDialog* sheet = sheet_;
        sheet_ = nullptr;
        sheet->hide();
        sheet->deleteLater();
    }
    covered_->setEnabled(true);
    hide();
}

void SheetOverlay::place() {
    if (!sheet_) {
        return;
    }
    const int width = std::min(width_, this->width() - 2 * edgeMargin);
    const int height = std::min(sheet_->heightForWidth(width) > 0 ? sheet_->heightForWidth(width)
                                                                  : sheet_->sizeHint().height(),
                                this->height() - 2 * edgeMargin);
    sheet_->setGeometry((this->width() - width) / 2,
                        std::max(edgeMargin, (this->height() - height) / 3), width, height);
}

void SheetOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0, 0, 0, Style::isDark(palette()) ? 110 : 60));
}

bool SheetOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible()) {
        setGeometry(parentWidget()->rect());
        place();
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace dorvik
