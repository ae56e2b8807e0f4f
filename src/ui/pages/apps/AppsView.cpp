#include "ui/pages/apps/AppsView.h"

#include "apps/UninstallRefusal.h"
#include "base/Dates.h"
#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/NodeActions.h"
#include "ui/files/SortHeader.h"
#include "ui/pages/apps/AppInspector.h"
#include "ui/pages/apps/AppNameDelegate.h"
#include "ui/pages/apps/AppTableModel.h"
#include "ui/widgets/ListTable.h"
#include "ui/widgets/PageHeader.h"

#include <QAction>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QStackedLayout>
#include <QTableView>

#include <chrono>

namespace dorvik {

namespace {

constexpr int rowHeight = 30;
// How often the page looks again at which applications run, while it shows: a quit application's
// button comes back within this time.
constexpr std::chrono::milliseconds runningCheckInterval{2000};

int64_t totalOf(const std::vector<InstalledApp>& apps) {
    int64_t total = 0;
    for (const InstalledApp& app : apps) {
        total += app.totalSize();
    }
    return total;
}

} // namespace

AppsView::AppsView(AppState& state, QWidget* parent)
    : Page(tr("Applications"),
           tr("Every app along with the data it keeps outside its bundle: caches, containers, "
              "preferences…"),
           parent),
      state_(state), refresh_(new QPushButton(tr("Refresh"))), search_(new QLineEdit),
      hideApple_(new QCheckBox(tr("Hide Apple apps"))),
      unused_(new QCheckBox(tr("Unused for 3 months"))),
      count_(Style::label({}, Style::TextRole::secondary)), model_(new AppTableModel(this)),
      table_(makeTable()), note_(Style::label({}, Style::TextRole::tertiary)),
      listStack_(new QStackedLayout), inspector_(new AppInspector) {
    refresh_->setIcon(Symbols::icon("arrow.clockwise"));
    connect(refresh_, &QPushButton::clicked, &state.apps(), &AppsState::refresh);
    header()->addTrailing(refresh_);

    note_->setAlignment(Qt::AlignCenter);
    note_->setWordWrap(true);
    listStack_->addWidget(table_);
    listStack_->addWidget(note_);
    auto* content = new QHBoxLayout;
    content->setSpacing(Style::sectionGap);
    content->addLayout(listStack_, 1);
    content->addWidget(inspector_);
    inspector_->onUninstall = [this](const InstalledApp& app) { uninstall(app); };

    body()->addWidget(makeFilterBar());
    body()->addLayout(content, 1);

    runningTimer_.setInterval(runningCheckInterval);
    connect(&runningTimer_, &QTimer::timeout, this, &AppsView::lookAtRunningApps);
    connect(&state.apps(), &AppsState::appsChanged, this, &AppsView::refresh);
    connect(&state.apps(), &AppsState::appsLoadingChanged, this, &AppsView::refresh);
    refresh();
}

QWidget* AppsView::makeFilterBar() {
    auto* bar = new QWidget;
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::sectionGap);
    search_->setPlaceholderText(tr("Search apps"));
    search_->setMinimumWidth(220);
    search_->setClearButtonEnabled(true);
    search_->addAction(Symbols::icon("magnifyingglass", Style::Tint::secondary),
                       QLineEdit::LeadingPosition);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        filter_.search = stdText(text);
        refresh();
    });
    connect(hideApple_, &QCheckBox::toggled, this, [this](bool on) {
        filter_.hideApple = on;
        refresh();
    });
    connect(unused_, &QCheckBox::toggled, this, [this](bool on) {
        filter_.unusedOnly = on;
        refresh();
    });
    for (QCheckBox* toggle : {hideApple_, unused_}) {
        toggle->setProperty("filterToggle", true);
    }
    layout->addWidget(search_);
    layout->addWidget(hideApple_);
    layout->addWidget(unused_);
    layout->addStretch(1);
    layout->addWidget(count_);
    return bar;
}

QTableView* AppsView::makeTable() {
    auto* table = new QTableView;
    table->setHorizontalHeader(new SortHeader(table));
    table->setModel(model_);
    styleListTable(table, rowHeight);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setIconSize(QSize(20, 20));
    table->setItemDelegateForColumn(AppTableModel::name, new AppNameDelegate(table));
    QHeaderView* columns = table->horizontalHeader();
    columns->setSectionsClickable(true);
    columns->setSortIndicatorShown(true);
    columns->setSortIndicator(model_->sortColumn(), model_->sortOrder());
    columns->setSectionResizeMode(AppTableModel::name, QHeaderView::Stretch);
    columns->resizeSection(AppTableModel::total, 96);
    columns->resizeSection(AppTableModel::lastUsed, 150);
    connect(columns, &QHeaderView::sortIndicatorChanged, model_, &AppTableModel::sort);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &AppsView::selectionChanged);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(table, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        const int row = table_->indexAt(position).row();
        if (row >= 0) {
            table_->selectRow(row);
            makeMenu(row)->popup(table_->viewport()->mapToGlobal(position));
        }
    });
    return table;
}

void AppsView::showEvent(QShowEvent* event) {
    Page::showEvent(event);
    state_.apps().load();
    lookAtRunningApps();
    runningTimer_.start();
}

void AppsView::hideEvent(QHideEvent* event) {
    runningTimer_.stop();
    Page::hideEvent(event);
}

void AppsView::refresh() {
    const AppsState& apps = state_.apps();
    const std::optional<InstalledApp> selected = selectedApp();
    std::vector<InstalledApp> shown = filtered(apps.apps(), filter_, Dates::now());
    count_->setText(tr("%1 apps · %2")
                        .arg(qtText(TextForms::count(static_cast<int64_t>(shown.size()))),
                             qtText(TextForms::size(totalOf(shown)))));
    const bool none = shown.empty();
    model_->setApps(std::move(shown));
    refresh_->setEnabled(!apps.appsLoading());

    if (apps.apps().empty()) {
        note_->setText(apps.appsLoading() ? tr("Measuring apps and their data…")
                                          : tr("No applications found."));
    } else {
        note_->setText(tr("No apps match the filter."));
    }
    listStack_->setCurrentIndex(none ? 1 : 0);

    // The selected application stays selected while it is still shown.
    const int row = selected ? model_->rowOf(selected->path) : -1;
    if (row >= 0) {
        table_->selectRow(row);
    }
    selectionChanged();
}

std::optional<InstalledApp> AppsView::selectedApp() const {
    const QModelIndexList rows = table_->selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        return std::nullopt;
    }
    return model_->app(rows.front().row());
}

void AppsView::selectionChanged() {
    const std::vector<std::string> running = AppsState::runningIdentifiers();
    model_->setRunning(running);
    inspector_->showApp(selectedApp(), running);
}

void AppsView::lookAtRunningApps() {
    const std::vector<std::string> running = AppsState::runningIdentifiers();
    model_->setRunning(running);
    inspector_->setRunning(running);
}

void AppsView::uninstall(const InstalledApp& app) {
    state_.apps().uninstall(app);
    // What runs may have changed since the last look: the page shows what the state decided on.
    lookAtRunningApps();
}

QMenu* AppsView::makeMenu(int row) {
    const InstalledApp app = model_->app(row);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Show in Finder"), [this, path = app.path] { revealPaths(state_, {path}); });
    menu->addSeparator();
    QAction* uninstallAction = menu->addAction(tr("Uninstall…"), [this, app] { uninstall(app); });
    // The same refusals as the inspector: the entry stays, greyed, with the reason under it.
    if (const auto refusal = uninstallRefusal(app, AppsState::runningIdentifiers())) {
        uninstallAction->setEnabled(false);
        menu->addAction(shownText(refusalNote(*refusal)))->setEnabled(false);
    }
    return menu;
}

} // namespace dorvik
