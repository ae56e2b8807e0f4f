#include "ui/shell/RootView.h"

#include "state/AppState.h"
#include "ui/pages/Pages.h"
#include "ui/sheets/ConfirmDeletionView.h"
#include "ui/sheets/SettingsView.h"
#include "ui/shell/AccessOnboardingView.h"
#include "ui/shell/RemovedAppBanner.h"
#include "ui/shell/SheetOverlay.h"
#include "ui/shell/Sidebar.h"
#include "ui/shell/ToastView.h"

#include <QGuiApplication>
#include <QMenuBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int sidebarMinimumWidth = 210;
constexpr int sidebarWidth = 230;
constexpr int sidebarMaximumWidth = 280;

} // namespace

RootView::RootView(AppState& state, AppearanceController& appearance,
                   std::chrono::milliseconds toastLifetime, QWidget* parent)
    : QMainWindow(parent), state_(state), appearance_(appearance), split_(new QSplitter),
      sidebar_(new Sidebar(state)) {
    setWindowTitle(QStringLiteral("Dorvik"));
    setMinimumSize(rootViewMinimumSize);

    sidebar_->setMinimumWidth(sidebarMinimumWidth);
    sidebar_->setMaximumWidth(sidebarMaximumWidth);
    split_->setChildrenCollapsible(false);
    split_->setHandleWidth(1);
    split_->addWidget(sidebar_);
    split_->addWidget(makeContent(toastLifetime));
    split_->setStretchFactor(1, 1);
    split_->setSizes({sidebarWidth, rootViewMinimumSize.width() - sidebarWidth});

    auto* central = new QWidget;
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split_);
    setCentralWidget(central);
    sheets_ = new SheetOverlay(split_, central);

    makeMenus();
    connect(&state, &AppState::sectionChanged, this, &RootView::showSection);
    connect(&state, &AppState::showAccessOnboardingChanged, this, &RootView::refreshSheets);
    connect(&state.removal(), &RemovalState::planChanged, this, &RootView::refreshSheets);
    connect(qApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState applicationState) {
                if (applicationState == Qt::ApplicationActive) {
                    state_.applicationBecameActive();
                }
            });
    showSection();
    refreshSheets();
}

QWidget* RootView::makeContent(std::chrono::milliseconds toastLifetime) {
    auto* content = new QWidget;
    bannerSlot_ = new QWidget;
    auto* bannerLayout = new QVBoxLayout(bannerSlot_);
    bannerLayout->setContentsMargins(0, 0, 0, 0);
    bannerSlot_->hide();
    auto* removedAppBanner = new RemovedAppBanner(state_);
    bannerLayout->addWidget(removedAppBanner);
    // The slot shows while the removed-app report stands.
    connect(&state_.removedApp(), &RemovedAppState::removedAppChanged, bannerSlot_,
            [this] { bannerSlot_->setVisible(state_.removedApp().removedApp().has_value()); });

    pages_ = new QStackedWidget;
    for (AppSection section : allAppSections) {
        pages_->addWidget(makePage(section, state_));
    }

    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bannerSlot_);
    layout->addWidget(pages_, 1);
    toast_ = new ToastView(state_, toastLifetime, content);
    return content;
}

void RootView::makeMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* settings = file->addAction(tr("Settings…"), this, &RootView::showSettings);
    settings->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    settings->setMenuRole(QAction::PreferencesRole);
    file->addSeparator();
    QAction* quit = file->addAction(tr("Quit"), qApp, &QCoreApplication::quit);
    quit->setShortcut(QKeySequence::Quit);

    scanMenu_ = menuBar()->addMenu(tr("Scan"));
    QAction* wholeDisk = scanMenu_->addAction(
        tr("Scan Entire Disk"), this, [this] { state_.startScan(ScanTarget::wholeDisk()); });
    wholeDisk->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
    QAction* home = scanMenu_->addAction(tr("Scan Home Folder"), this,
                                         [this] { state_.startScan(ScanTarget::home()); });
    home->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R));
    QAction* quickClean = scanMenu_->addAction(
        tr("Quick Clean"), this, [this] { state_.setSection(AppSection::smartClean); });
    quickClean->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_1));
}

void RootView::showSettings() {
    if (!settings_) {
        settings_ = new SettingsView(state_, appearance_, this);
    }
    settings_->show();
    settings_->raise();
    settings_->activateWindow();
}

QWidget* RootView::page(AppSection section) const {
    return pages_->widget(static_cast<int>(section));
}

QWidget* RootView::currentPage() const {
    return pages_->currentWidget();
}

void RootView::showSection() {
    pages_->setCurrentIndex(static_cast<int>(state_.section()));
}

// One sheet at a time: the access sheet first, then the plan. A sheet whose reason has gone goes
// with it, and a new plan replaces the sheet of the old one.
void RootView::refreshSheets() {
    if (state_.showAccessOnboarding()) {
        if (dynamic_cast<AccessOnboardingView*>(sheets_->sheet()) == nullptr) {
            sheets_->present(new AccessOnboardingView(state_), accessOnboardingWidth);
        }
        return;
    }
    if (state_.removal().plan()) {
        const auto* shown = dynamic_cast<ConfirmDeletionView*>(sheets_->sheet());
        if (shown == nullptr || shown->planId() != state_.removal().plan()->id) {
            sheets_->present(new ConfirmDeletionView(state_, *state_.removal().plan()),
                             confirmDeletionWidth);
        }
        return;
    }
    sheets_->dismiss();
}

} // namespace dorvik
