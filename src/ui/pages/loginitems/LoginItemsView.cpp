#include "ui/pages/loginitems/LoginItemsView.h"

#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/files/NodeActions.h"
#include "ui/pages/loginitems/LoginItemRow.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/ScanningRing.h"
#include "ui/widgets/SymbolView.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace dorvik {

namespace {

void clear(QVBoxLayout* list) {
    while (QLayoutItem* item = list->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

// The line between two rows, in the colour of the appearance in force.
class Divider : public QWidget {
public:
    Divider() { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Style::separator(palette()));
    }
};

} // namespace

LoginItemsView::LoginItemsView(AppState& state, QWidget* parent)
    : Page(tr("Login Items"),
           shownText("Background agents and daemons that start with your Mac. Removing one "
                     "stops it from launching; the app itself stays installed."),
           parent),
      state_(state) {
    // No "Open Login Items Settings": Linux desktops have no such settings page to open.
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, Style::gap, 0);
    column->setSpacing(Style::sectionGap);

    loading_ = new QWidget;
    auto* loadingRow = new QHBoxLayout(loading_);
    loadingRow->setContentsMargins(0, 0, 0, 0);
    loadingRow->setSpacing(Style::gap);
    loadingRow->addWidget(new ScanningRing(20));
    loadingRow->addWidget(Style::label(tr("Reading launch agents…"), Style::TextRole::secondary));
    loadingRow->addStretch(1);
    column->addWidget(loading_);

    auto* note = new QHBoxLayout;
    note->setSpacing(Style::gap);
    auto* info = new SymbolView("info.circle", Style::smallIcon);
    info->setTint(Style::Tint::secondary);
    note->addWidget(info, 0, Qt::AlignTop);
    QLabel* noteText = Style::label(
        tr("Read from the files that start them, whether they are running now or not."),
        Style::TextRole::caption);
    noteText->setWordWrap(true);
    note->addWidget(noteText, 1);
    column->addLayout(note);

    message_ = Style::label({}, Style::TextRole::caption);
    message_->setWordWrap(true);
    column->addWidget(message_);
    nothing_ = Style::label(tr("Nothing starts by itself at login."), Style::TextRole::secondary);
    column->addWidget(nothing_);

    sections_ = new QVBoxLayout;
    sections_->setSpacing(Style::sectionGap + 4);
    column->addLayout(sections_);
    column->addStretch(1);

    auto* scroll = new QScrollArea;
    scroll->setProperty("page", true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(content);
    body()->addWidget(scroll, 1);

    LoginItemsState& loginItems = state_.loginItems();
    connect(&loginItems, &LoginItemsState::changed, this, &LoginItemsView::showItems);
    connect(&loginItems, &LoginItemsState::messageChanged, this, &LoginItemsView::showMessage);
    showItems();
    showMessage();
}

void LoginItemsView::showEvent(QShowEvent* event) {
    Page::showEvent(event);
    // Each visit reads afresh; a window coming back from the taskbar is no visit.
    if (!event->spontaneous()) {
        state_.loginItems().refresh();
    }
}

void LoginItemsView::changeEvent(QEvent* event) {
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        showMessage(); // its amber follows the appearance
    }
}

void LoginItemsView::showMessage() {
    const std::optional<std::string>& message = state_.loginItems().message();
    message_->setVisible(message.has_value());
    message_->setText(message ? shownText(*message) : QString());
    // The application's style sheet colours every caption; only the label's own sheet wins.
    message_->setStyleSheet(QStringLiteral("color: %1;").arg(Style::warning(palette()).name()));
}

void LoginItemsView::showItems() {
    const LoginItemsState& loginItems = state_.loginItems();
    const std::vector<LaunchItem>& items = loginItems.items();
    loading_->setVisible(loginItems.isLoading());
    nothing_->setVisible(!loginItems.isLoading() && items.empty());
    clear(sections_);
    sectionTitles_.clear();
    rows_.clear();
    for (const LaunchScopeInfo& scope : launchScopes()) {
        const auto inScope = [&scope](const LaunchItem& item) { return item.scope == scope.scope; };
        if (std::ranges::none_of(items, inScope)) {
            continue;
        }
        auto* section = new QWidget;
        auto* layout = new QVBoxLayout(section);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(Style::gap);
        QLabel* title = Style::label(shownText(scope.sectionTitle), Style::TextRole::headline);
        layout->addWidget(title);
        sectionTitles_.push_back(title);
        auto* card = new QFrame;
        Style::makeCard(card);
        auto* list = new QVBoxLayout(card);
        list->setContentsMargins(Style::cardPadding, Style::smallGap, Style::cardPadding,
                                 Style::smallGap);
        list->setSpacing(0);
        bool first = true;
        for (const LaunchItem& item : items) {
            if (!inScope(item)) {
                continue;
            }
            if (!first) {
                list->addWidget(new Divider);
            }
            first = false;
            auto* row = new LoginItemRow(
                item, loginItems.isRemoving(),
                [this, path = item.path] { revealPaths(state_, {path}); },
                [this, item] { state_.loginItems().remove(item); });
            list->addWidget(row);
            rows_.push_back(row);
        }
        layout->addWidget(card);
        sections_->addWidget(section);
    }
}

} // namespace dorvik
