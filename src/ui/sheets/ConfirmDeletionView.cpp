#include "ui/sheets/ConfirmDeletionView.h"

#include "base/TextForms.h"
#include "removal/PlanTexts.h"
#include "scanning/Classification.h"
#include "scanning/ScanPaths.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/RiskBadge.h"
#include "ui/widgets/SymbolView.h"

#include <QCheckBox>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace dorvik {

namespace {

enum Role {
    isHeadingRole = Qt::UserRole + 1,
    riskRole,
    reasonRole,
    pathRole,
    sizeRole,
    symbolRole,
};

constexpr int headingHeight = 32;
constexpr int rowHeight = 58;
constexpr int rowIcon = 22;
constexpr int listMaximumHeight = 330;
constexpr double dimOpacity = 0.55;

int64_t totalSize(const std::vector<PlanItem>& items) {
    int64_t total = 0;
    for (const PlanItem& item : items) {
        total += item.size;
    }
    return total;
}

// The symbol of a folder, or of the kind of file its name says.
std::string_view itemSymbol(const PlanItem& item) {
    if (QFileInfo(qtText(item.path)).isDir()) {
        return "folder.fill";
    }
    return info(Classification::fileKindOfName(item.name)).symbol;
}

// "**" around a word makes it bold.
QString boldMarks(const QString& text) {
    QString html = text.toHtmlEscaped();
    bool open = true;
    for (qsizetype at = html.indexOf(QLatin1String("**")); at >= 0;
         at = html.indexOf(QLatin1String("**"))) {
        html.replace(at, 2, open ? QStringLiteral("<b>") : QStringLiteral("</b>"));
        open = !open;
    }
    return html;
}

} // namespace

double planRowOpacity(Risk risk, bool acceptedReview) {
    switch (risk) {
    case Risk::safe:
        return 1.0;
    case Risk::review:
        return acceptedReview ? 1.0 : dimOpacity;
    case Risk::protected_:
        return dimOpacity;
    }
    return dimOpacity;
}

// Draws the plan's sections: a heading with the risk's badge, its count and size; each item with
// its icon, name, reason and path, and its size at the end, dim when it won't go.
class PlanListDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool acceptedReview = false;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
        return {0, index.data(isHeadingRole).toBool() ? headingHeight : rowHeight};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const auto risk = static_cast<Risk>(index.data(riskRole).toInt());
        const QPalette& palette = option.palette;
        const QRect area = option.rect.adjusted(4, 0, -4, 0);
        painter->save();
        if (index.data(isHeadingRole).toBool()) {
            const int badge = paintRiskBadge(*painter, area.left(), area.center().y() + 2, risk,
                                             false, option.font, palette);
            painter->setPen(Style::secondaryText(palette));
            painter->setFont(option.font);
            painter->drawText(area.adjusted(badge + Style::gap, 4, 0, 0),
                              Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
            painter->restore();
            return;
        }
        painter->setOpacity(planRowOpacity(risk, acceptedReview));
        if (!index.siblingAtRow(index.row() - 1).data(isHeadingRole).toBool()) {
            painter->setPen(Style::separator(palette));
            painter->drawLine(area.left() + rowIcon + Style::gap * 2, area.top(), area.right(),
                              area.top());
        }

        const QRect icon(area.left() + 4, area.center().y() - rowIcon / 2, rowIcon, rowIcon);
        Symbols::icon(stdText(index.data(symbolRole).toString()), Style::Tint::accent)
            .paint(painter, icon);

        QFont small = option.font;
        small.setPointSizeF(option.font.pointSizeF() * 0.85);
        const QFontMetrics bodyMetrics(option.font);
        const QFontMetrics smallMetrics(small);
        const QString size = index.data(sizeRole).toString();
        const int sizeWidth = bodyMetrics.horizontalAdvance(size);
        const int textLeft = icon.right() + Style::gap + 4;
        const int textWidth = area.right() - sizeWidth - Style::sectionGap - textLeft;
        const int top = area.center().y() - (bodyMetrics.height() + 2 * smallMetrics.height()) / 2;

        painter->setFont(option.font);
        painter->setPen(palette.color(QPalette::Text));
        painter->drawText(
            QRect(textLeft, top, textWidth, bodyMetrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
            bodyMetrics.elidedText(index.data().toString(), Qt::ElideRight, textWidth));
        painter->setFont(small);
        painter->setPen(Style::secondaryText(palette));
        const int reasonTop = top + bodyMetrics.height();
        painter->drawText(
            QRect(textLeft, reasonTop, textWidth, smallMetrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
            smallMetrics.elidedText(index.data(reasonRole).toString(), Qt::ElideRight, textWidth));
        painter->setPen(Style::tertiaryText(palette));
        painter->drawText(
            QRect(textLeft, reasonTop + smallMetrics.height(), textWidth, smallMetrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
            smallMetrics.elidedText(index.data(pathRole).toString(), Qt::ElideMiddle, textWidth));

        painter->setFont(option.font);
        painter->setPen(risk == Risk::protected_ ? Style::secondaryText(palette)
                                                 : palette.color(QPalette::Text));
        painter->drawText(QRect(area.right() - sizeWidth, area.top(), sizeWidth, area.height()),
                          Qt::AlignRight | Qt::AlignVCenter, size);
        painter->restore();
    }
};

ConfirmDeletionView::ConfirmDeletionView(AppState& state, DeletionPlan plan, QWidget* parent)
    : QDialog(parent, Qt::Widget), state_(state), plan_(std::move(plan)),
      byRisk_(itemsByRisk(plan_)), list_(new QListWidget), delegate_(new PlanListDelegate(list_)),
      total_(Style::label({}, Style::TextRole::body)), cancel_(new QPushButton(tr("Cancel"))),
      confirm_(new QPushButton(
          shownText(PlanTexts::confirmButton(state.settings().permanentDelete())))) {
    list_->setItemDelegate(delegate_);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setFocusPolicy(Qt::NoFocus);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setStyleSheet(QStringLiteral("QListWidget { background: transparent; }"));
    fillList();

    confirm_->setDefault(true);
    Style::setProminent(confirm_, true);
    connect(cancel_, &QPushButton::clicked, this, &ConfirmDeletionView::reject);
    connect(confirm_, &QPushButton::clicked, this, [this] {
        // The plan leaves the state here, and the sheet with it.
        state_.removal().execute(plan_, acceptedReview_);
    });
    auto* footer = new QHBoxLayout;
    footer->setSpacing(Style::gap);
    footer->addWidget(total_);
    footer->addStretch();
    footer->addWidget(cancel_);
    footer->addWidget(confirm_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 22, 24, 20);
    layout->setSpacing(Style::sectionGap);
    layout->addWidget(makeHead());
    layout->addWidget(list_);
    const size_t reviewCount = byRisk_[static_cast<size_t>(Risk::review)].size();
    if (reviewCount > 0) {
        layout->addWidget(makeReviewConsent(reviewCount));
    }
    const size_t protectedCount = byRisk_[static_cast<size_t>(Risk::protected_)].size();
    if (protectedCount > 0) {
        auto* note = new QHBoxLayout;
        note->setSpacing(Style::gap);
        auto* lock = new SymbolView("lock.fill", Style::smallIcon);
        lock->setTint(Style::Tint::secondary);
        note->addWidget(lock);
        note->addWidget(Style::label(shownText(PlanTexts::protectedNote(protectedCount)),
                                     Style::TextRole::secondary),
                        1);
        layout->addLayout(note);
    }
    layout->addLayout(footer);
    refresh();
}

QWidget* ConfirmDeletionView::makeHead() {
    auto* head = new QWidget;
    auto* symbol = new SymbolView("trash.circle.fill", 44);
    symbol->setTint(Style::Tint::danger);
    symbol->setBadge(true);
    auto* title = Style::label(shownText(plan_.title), Style::TextRole::headline);
    auto* line = Style::label(shownText(PlanTexts::headline(state_.settings().permanentDelete())),
                              Style::TextRole::secondary);
    line->setWordWrap(true);
    QVBoxLayout* lines = layOutWithLeadingSymbol(head, symbol, 0, Style::cardPadding).column;
    lines->setSpacing(2);
    lines->addWidget(title);
    lines->addWidget(line);
    if (const auto note = PlanTexts::uninstallNote(plan_)) {
        auto* uninstall = Style::label(shownText(*note), Style::TextRole::secondary);
        uninstall->setWordWrap(true);
        lines->addWidget(uninstall);
    }
    return head;
}

void ConfirmDeletionView::fillList() {
    int contentHeight = 0;
    for (Risk risk : allRisks) {
        const std::vector<PlanItem>& items = byRisk_[static_cast<size_t>(risk)];
        if (items.empty()) {
            continue;
        }
        auto* heading = new QListWidgetItem(QStringLiteral("%1 · %2")
                                                .arg(items.size())
                                                .arg(qtText(TextForms::size(totalSize(items)))),
                                            list_);
        heading->setData(isHeadingRole, true);
        heading->setData(riskRole, static_cast<int>(risk));
        heading->setFlags(Qt::ItemIsEnabled);
        contentHeight += headingHeight;
        for (const PlanItem& item : items) {
            auto* row = new QListWidgetItem(nameText(item.name), list_);
            row->setData(isHeadingRole, false);
            row->setData(riskRole, static_cast<int>(risk));
            row->setData(reasonRole, shownText(item.verdict.reason));
            row->setData(pathRole, nameText(displayPath(item.path)));
            row->setData(sizeRole, qtText(TextForms::size(item.size)));
            row->setData(symbolRole, qtText(itemSymbol(item)));
            row->setFlags(Qt::ItemIsEnabled);
            contentHeight += rowHeight;
        }
    }
    list_->setFixedHeight(std::min(contentHeight + 2, listMaximumHeight));
}

QWidget* ConfirmDeletionView::makeReviewConsent(size_t reviewCount) {
    // A box whose label carries a bold word; a click on the label ticks the box as well.
    auto* consent = new QWidget;
    reviewBox_ = new QCheckBox;
    reviewText_ = new QLabel(boldMarks(shownText(PlanTexts::reviewConsent(reviewCount))));
    reviewText_->setTextFormat(Qt::RichText);
    reviewText_->setWordWrap(true);
    reviewText_->installEventFilter(this);
    connect(reviewBox_, &QCheckBox::toggled, this, &ConfirmDeletionView::setAcceptedReview);
    auto* layout = new QHBoxLayout(consent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(reviewBox_, 0, Qt::AlignTop);
    layout->addWidget(reviewText_, 1);
    return consent;
}

void ConfirmDeletionView::setAcceptedReview(bool accepted) {
    acceptedReview_ = accepted;
    delegate_->acceptedReview = accepted;
    list_->viewport()->update();
    refresh();
}

void ConfirmDeletionView::refresh() {
    total_->setText(
        tr("Total: %1").arg(qtText(TextForms::size(plannedTotal(plan_, acceptedReview_)))));
    const bool anythingGoes =
        !byRisk_[static_cast<size_t>(Risk::safe)].empty() ||
        (acceptedReview_ && !byRisk_[static_cast<size_t>(Risk::review)].empty());
    confirm_->setEnabled(anythingGoes);
}

bool ConfirmDeletionView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == reviewText_ && event->type() == QEvent::MouseButtonRelease) {
        reviewBox_->toggle();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void ConfirmDeletionView::reject() {
    state_.removal().cancelPlan();
    QDialog::reject();
}

} // namespace dorvik
