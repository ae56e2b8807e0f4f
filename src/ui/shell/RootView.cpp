#include "ui/shell/RootView.h"

#include "state/AppState.h"
#include "ui/pages/Pages.h"
#include "ui/sheets/SettingsView.h"
#include "ui/shell/AccessOnboardingView.h"
#include "ui/shell/SheetOverlay.h"
#include "ui/shell/Sidebar.h"

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

RootView::RootView(AppState& state, AppearanceController& appearance, QWidget* parent)
    : QMainWindow(parent), state_(state), appearance_(appearance), split_(new QSplitter),
      sidebar_(new Sidebar(state)) {
    setWindowTitle(QStringLiteral("Dorvik"));
    setMinimumSize(rootViewMinimumSize);

    sidebar_->setMinimumWidth(sidebarMinimumWidth);
    sidebar_->setMaximumWidth(sidebarMaximumWidth);
    split_->setChildrenCollapsible(false);
    split_->setHandleWidth(1);
    split_->addWidget(sidebar_);
    split_->addWidget(makeContent());
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
    connect(qApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState applicationState) {
                if (applicationState == Qt::ApplicationActive) {
                    state_.applicationBecameActive();
                }
            });
    showSection();
    refreshSheets();
}

QWidget* RootView::makeContent() {
    auto* content = new QWidget;
    bannerSlot_ = new QWidget;
    auto* bannerLayout = new QVBoxLayout(bannerSlot_);
    bannerLayout->setContentsMargins(0, 0, 0, 0);
    bannerSlot_->hide();

    pages_ = new QStackedWidget;
    for (AppSection section : allAppSections) {
        pages_->addWidget(makePage(section, state_));
    }

    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bannerSlot_);
    layout->addWidget(pages_, 1);
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

void RootView::refreshSheets() {
    const bool onboardingUp = dynamic_cast<AccessOnboardingView*>(sheets_->sheet()) != nullptr;
    if (state_.showAccessOnboarding() && !onboardingUp) {
        sheets_->present(new AccessOnboardingView(state_), accessOnboardingWidth);
    } else if (!state_.showAccessOnboarding() && onboardingUp) {
        sheets_->dismiss();
    }
}

} // namespace dorvik
