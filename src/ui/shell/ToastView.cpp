#include "ui/shell/ToastView.h"

#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/SymbolView.h"

#include <QEvent>
#include <QGraphicsDropShadowEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int edgeDistance = 20;
constexpr int widest = 560;
constexpr int narrowest = 340;
constexpr int slideMilliseconds = 350;

} // namespace

ToastView::ToastView(AppState& state, std::chrono::milliseconds lifetime, QWidget* parent)
    : QFrame(parent), state_(state), lifetime_(lifetime),
      message_(Style::label({}, Style::TextRole::headline)),
      detail_(Style::label({}, Style::TextRole::secondary)), undo_(new QPushButton(tr("Undo"))),
      close_(new QToolButton), slide_(this, "pos") {
    Style::makeCard(this);
    auto* shadow = new QGraphicsDropShadowEffect(this);
    shadow->setBlurRadius(24);
    shadow->setOffset(0, 4);
    shadow->setColor(QColor(0, 0, 0, 70));
    setGraphicsEffect(shadow);

    symbol_ = new SymbolView("checkmark.circle.fill", 24);
    symbol_->setTint(Style::Tint::positive);
    close_->setIcon(Symbols::icon("xmark", Style::Tint::secondary));
    close_->setAutoRaise(true);
    close_->setToolTip(tr("Close"));
    connect(close_, &QToolButton::clicked, &state_.removal(), &RemovalState::closeToast);
    connect(undo_, &QPushButton::clicked, this, [this] {
        if (state_.removal().toast()) {
            state_.removal().undo(state_.removal().toast()->undoable);
        }
    });

    const LeadingSymbolLayout layout = layOutWithLeadingSymbol(this, symbol_, 0, Style::gap + 2);
    layout.row->setContentsMargins(Style::cardPadding, Style::gap + 2, Style::gap, Style::gap + 2);
    layout.row->setAlignment(symbol_, Qt::AlignVCenter);
    layout.column->setSpacing(2);
    layout.column->addWidget(message_);
    layout.column->addWidget(detail_);
    layout.row->addWidget(undo_);
    layout.row->addWidget(close_);

    slide_.setDuration(slideMilliseconds);
    slide_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&slide_, &QPropertyAnimation::finished, this, [this] {
        if (!state_.removal().toast()) {
            hide();
        }
    });
    parent->installEventFilter(this);
    connect(&state.removal(), &RemovalState::toastChanged, this, &ToastView::refresh);
    hide();
    refresh();
}

void ToastView::refresh() {
    const std::optional<Toast>& toast = state_.removal().toast();
    if (!toast) {
        shownId_.clear();
        if (isVisible()) {
            slide_.stop();
            slide_.setStartValue(pos());
            slide_.setEndValue(hiddenPlace());
            slide_.start();
        }
        return;
    }
    symbol_->setSymbol(toast->warning ? "exclamationmark.triangle.fill" : "checkmark.circle.fill");
    symbol_->setTint(toast->warning ? Style::Tint::warning : Style::Tint::positive);
    message_->setText(shownText(toast->message));
    detail_->setText(toast->detail ? shownText(*toast->detail) : QString());
    detail_->setVisible(toast->detail.has_value());
    undo_->setVisible(!toast->undoable.empty());
    if (toast->id == shownId_) {
        return;
    }
    // A new toast: its own full time, whatever the timer of the one before does.
    shownId_ = toast->id;
    QTimer::singleShot(lifetime_, this,
                       [this, id = toast->id] { state_.removal().dismissToast(id); });
    const bool appearing = !isVisible();
    show();
    raise();
    place();
    if (appearing) {
        slide_.stop();
        slide_.setStartValue(hiddenPlace());
        slide_.setEndValue(restingPlace());
        move(hiddenPlace());
        slide_.start();
    }
}

void ToastView::place() {
    const int available = parentWidget()->width() - 2 * edgeDistance;
    const int width =
        std::clamp(sizeHint().width(), std::min(narrowest, available), std::min(widest, available));
    resize(width, sizeHint().height());
    if (slide_.state() != QAbstractAnimation::Running) {
        move(restingPlace());
    }
}

QPoint ToastView::restingPlace() const {
    return {(parentWidget()->width() - width()) / 2,
            parentWidget()->height() - height() - edgeDistance};
}

QPoint ToastView::hiddenPlace() const {
    return {(parentWidget()->width() - width()) / 2, parentWidget()->height()};
}

bool ToastView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible()) {
        place();
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace dorvik
