#include "ui/pages/history/HistoryView.h"

#include "scanning/ScanPaths.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/pages/history/HistoryModel.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/ListTable.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/SymbolView.h"

#include <QApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr size_t shownFailures = 8;
constexpr int rowHeight = 44;

// Draws a cell's background, selection and alternation included, without its text.
template <typename Delegate>
void paintCellBackground(const Delegate& delegate, QPainter* painter,
                         const QStyleOptionViewItem& option, const QModelIndex& index) {
    QStyleOptionViewItem cell = option;
    delegate.initStyleOption(&cell, index);
    cell.text.clear();
    const QWidget* widget = option.widget;
    QStyle* style = widget != nullptr ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, widget);
}

// The item's name, with its path under it in small type, cut in the middle when long.
class ItemDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::initStyleOption;
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        paintCellBackground(*this, painter, option, index);

        const bool selected = option.state & QStyle::State_Selected;
        const QPalette& palette = option.palette;
        QFont small = option.font;
        small.setPointSizeF(option.font.pointSizeF() * 0.85);
        const QFontMetrics bodyMetrics(option.font);
        const QFontMetrics smallMetrics(small);
        const QRect area = option.rect.adjusted(3, 0, -3, 0);
        const int top = area.center().y() - (bodyMetrics.height() + smallMetrics.height()) / 2;

        painter->save();
        painter->setPen(selected ? palette.color(QPalette::HighlightedText)
                                 : palette.color(QPalette::Text));
        painter->drawText(
            QRect(area.left(), top, area.width(), bodyMetrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
            bodyMetrics.elidedText(index.data().toString(), Qt::ElideRight, area.width()));
        painter->setFont(small);
        painter->setPen(selected ? palette.color(QPalette::HighlightedText)
                                 : Style::secondaryText(palette));
        painter->drawText(
            QRect(area.left(), top + bodyMetrics.height(), area.width(), smallMetrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
            smallMetrics.elidedText(index.data(HistoryModel::pathRole).toString(), Qt::ElideMiddle,
                                    area.width()));
        painter->restore();
    }
};

// "Restore", drawn as a button in the rows that can be restored; a click restores that entry.
class RestoreDelegate : public QStyledItemDelegate {
public:
    RestoreDelegate(AppState& state, QObject* parent)
        : QStyledItemDelegate(parent), state_(state) {}
    using QStyledItemDelegate::initStyleOption;

    static QRect buttonRect(const QStyleOptionViewItem& option, const QString& text) {
        const int width = option.fontMetrics.horizontalAdvance(text) + 24;
        const int height = option.fontMetrics.height() + 8;
        return {option.rect.right() - width - 8, option.rect.center().y() - height / 2, width,
                height};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        paintCellBackground(*this, painter, option, index);
        const QString text = index.data().toString();
        if (text.isEmpty()) {
            return;
        }
        // The application's palette: the table's own is bent by its stylesheet.
        const QPalette palette = QGuiApplication::palette();
        const QRect button = buttonRect(option, text);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Style::separator(palette).darker(115));
        painter->setBrush(palette.color(QPalette::Button));
        painter->drawRoundedRect(QRectF(button).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
        painter->setPen(palette.color(QPalette::ButtonText));
        painter->drawText(button, Qt::AlignCenter, text);
        painter->restore();
    }

    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override {
        if (event->type() != QEvent::MouseButtonRelease) {
            return false;
        }
        const QString text = index.data().toString();
        const auto* click = static_cast<QMouseEvent*>(event);
        if (text.isEmpty() || !buttonRect(option, text).contains(click->position().toPoint())) {
            return false;
        }
        const HistoryEntry entry = static_cast<HistoryModel*>(model)->entry(index.row());
        state_.removal().undo({entry});
        return true;
    }

private:
    AppState& state_;
};

} // namespace

HistoryView::HistoryView(AppState& state, QWidget* parent)
    : Page(tr("History"),
           tr("Everything Dorvik has deleted. Anything still in the Trash can be "
              "restored to its original location."),
           parent),
      state_(state), model_(new HistoryModel(state, this)), table_(makeTable()),
      failuresCard_(new QFrame), failureRows_(new QVBoxLayout) {
    auto* clear = new QPushButton(tr("Clear History"));
    connect(clear, &QPushButton::clicked, &state_.removal(), &RemovalState::clearHistory);
    header()->addTrailing(clear);

    Style::makeCard(failuresCard_);
    auto* cardLayout = new QVBoxLayout(failuresCard_);
    cardLayout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                                   Style::cardPadding);
    cardLayout->setSpacing(Style::gap + 2);
    cardLayout->addWidget(
        Style::label(tr("Couldn’t be deleted in the last operation"), Style::TextRole::headline));
    failureRows_->setSpacing(Style::gap);
    cardLayout->addLayout(failureRows_);

    body()->addWidget(failuresCard_);
    body()->addWidget(table_, 1);
    connect(&state.removal(), &RemovalState::failuresChanged, this, &HistoryView::refreshFailures);
    refreshFailures();
}

QTableView* HistoryView::makeTable() {
    auto* table = new QTableView;
    table->setModel(model_);
    table->setItemDelegateForColumn(HistoryModel::item, new ItemDelegate(table));
    table->setItemDelegateForColumn(HistoryModel::restore, new RestoreDelegate(state_, table));
    styleListTable(table, rowHeight);
    QHeaderView* columns = table->horizontalHeader();
    columns->setSectionResizeMode(HistoryModel::item, QHeaderView::Stretch);
    columns->resizeSection(HistoryModel::date, 180);
    columns->resizeSection(HistoryModel::size, 96);
    columns->resizeSection(HistoryModel::method, 96);
    columns->resizeSection(HistoryModel::restore, 104);
    return table;
}

void HistoryView::refreshFailures() {
    while (QLayoutItem* row = failureRows_->takeAt(0)) {
        delete row->widget();
        delete row;
    }
    const std::vector<DeletionFailure>& failures = state_.removal().failures();
    failuresCard_->setVisible(!failures.empty());
    for (size_t i = 0; i < std::min(failures.size(), shownFailures); ++i) {
        auto* row = new QWidget;
        auto* symbol = new SymbolView("xmark.octagon.fill", Style::smallIcon);
        symbol->setTint(Style::Tint::danger);
        auto* path = new ElidedLabel;
        path->setText(nameText(displayPath(failures[i].path)));
        auto* reason = Style::label(shownText(failures[i].reason), Style::TextRole::caption);
        reason->setWordWrap(true);
        QVBoxLayout* lines = layOutWithLeadingSymbol(row, symbol, 0, Style::gap).column;
        lines->setSpacing(1);
        lines->addWidget(path);
        lines->addWidget(reason);
        failureRows_->addWidget(row);
    }
}

} // namespace dorvik
