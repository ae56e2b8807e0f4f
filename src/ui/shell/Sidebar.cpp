#include "ui/shell/Sidebar.h"

#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/shell/DiskFooter.h"

#include <QListWidget>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <array>
#include <span>

namespace dorvik {

namespace {

struct SidebarGroup {
    const char* heading; // empty: the group stands apart without a heading
    std::span<const AppSection> sections;
};

constexpr std::array simpleSections = {AppSection::smartClean};
constexpr std::array analyzeSections = {
    AppSection::overview, AppSection::trends,     AppSection::explorer, AppSection::types,
    AppSection::large,    AppSection::systemData, AppSection::cloud,
};
constexpr std::array appsSections = {AppSection::apps, AppSection::leftovers,
                                     AppSection::loginItems};
constexpr std::array cleanUpSections = {AppSection::junk, AppSection::developer,
                                        AppSection::duplicates};
constexpr std::array historySections = {AppSection::history};

constexpr std::array<SidebarGroup, 5> sidebarGroups = {{
    {"Simple", simpleSections},
    {"Analyze", analyzeSections},
    {"Apps", appsSections},
    {"Clean Up", cleanUpSections},
    {"", historySections},
}};

constexpr int noSection = -1;
constexpr int rowHeight = 30;
constexpr int headingHeight = 30;
constexpr int gapHeight = 14;
constexpr int listInset = 10; // between the list's edge and a row's highlight

// Draws the rows as a desktop sidebar does: headings small and quiet, the selected row on a
// rounded highlight, each symbol in the accent colour.
class SidebarDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
        if (index.data(Sidebar::sectionRole).toInt() != noSection) {
            return {0, rowHeight};
        }
        return {0, index.data().toString().isEmpty() ? gapHeight : headingHeight};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const QPalette& palette = option.palette;
        const QString text = index.data().toString();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (index.data(Sidebar::sectionRole).toInt() == noSection) {
            QFont font = option.font;
            font.setPointSizeF(font.pointSizeF() * 0.85);
            font.setWeight(QFont::DemiBold);
            painter->setFont(font);
            painter->setPen(Style::secondaryText(palette));
            const QRect textRect = option.rect.adjusted(listInset + 8, 0, -listInset, -4);
            painter->drawText(textRect, Qt::AlignLeft | Qt::AlignBottom, text);
            painter->restore();
            return;
        }
        const bool selected = option.state & QStyle::State_Selected;
        const QRect row = option.rect.adjusted(listInset, 1, -listInset, -1);
        if (selected) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(Style::accent(palette));
            painter->drawRoundedRect(row, Style::rowRadius, Style::rowRadius);
        } else if (option.state & QStyle::State_MouseOver) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(Style::separator(palette));
            painter->drawRoundedRect(row, Style::rowRadius, Style::rowRadius);
        }
        const QIcon icon = qvariant_cast<QIcon>(index.data(Qt::DecorationRole));
        const QRect iconRect(row.left() + 8, row.center().y() - Style::smallIcon / 2 + 1,
                             Style::smallIcon, Style::smallIcon);
        icon.paint(painter, iconRect, Qt::AlignCenter, selected ? QIcon::Selected : QIcon::Normal);
        painter->setPen(selected ? palette.color(QPalette::HighlightedText)
                                 : palette.color(QPalette::WindowText));
        painter->setFont(option.font);
        const QRect textRect = row.adjusted(8 + Style::smallIcon + 8, 0, -8, 0);
        painter->drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                          option.fontMetrics.elidedText(text, Qt::ElideRight, textRect.width()));
        painter->restore();
    }
};

} // namespace

Sidebar::Sidebar(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state), list_(new QListWidget) {
    setProperty("sidebar", true);
    setAttribute(Qt::WA_StyledBackground, true);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setItemDelegate(new SidebarDelegate(list_));
    list_->setMouseTracking(true);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->viewport()->setAutoFillBackground(false);
    list_->setAutoFillBackground(false);
    list_->setStyleSheet(QStringLiteral("QListWidget { background: transparent; outline: none; }"));

    for (const SidebarGroup& group : sidebarGroups) {
        auto* heading = new QListWidgetItem(tr(group.heading), list_);
        heading->setData(sectionRole, noSection);
        heading->setFlags(Qt::NoItemFlags);
        for (AppSection section : group.sections) {
            const AppSectionInfo& about = info(section);
            auto* row = new QListWidgetItem(Symbols::icon(about.symbol, Style::Tint::accent),
                                            shownText(about.title), list_);
            row->setData(sectionRole, static_cast<int>(section));
        }
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, Style::gap, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(list_, 1);
    layout->addWidget(new DiskFooter(state));

    connect(list_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (item != nullptr && item->data(sectionRole).toInt() != noSection) {
            state_.setSection(static_cast<AppSection>(item->data(sectionRole).toInt()));
        }
    });
    connect(&state, &AppState::sectionChanged, this, &Sidebar::showSection);
    showSection();
}

void Sidebar::showSection() {
    const int wanted = static_cast<int>(state_.section());
    for (int row = 0; row < list_->count(); ++row) {
        if (list_->item(row)->data(sectionRole).toInt() == wanted) {
            list_->setCurrentRow(row);
            return;
        }
    }
}

} // namespace dorvik
