#include "ui/tray/TrayPresence.h"

#include "background/LowSpace.h"
#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Symbols.h"
#include "ui/tray/MenuBarPanel.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QSystemTrayIcon>

#include <algorithm>

namespace dorvik {

TrayLabel trayLabel(const std::optional<VolumeInfo>& volume, int lowSpaceGB) {
    if (!volume) {
        return {"internaldrive", {}};
    }
    const bool low = LowSpace::isLow(volume->available, lowSpaceGB);
    return {low ? "exclamationmark.triangle.fill" : "internaldrive",
            QCoreApplication::translate("TrayPresence", "%1 free")
                .arg(qtText(TextForms::size(volume->available)))};
}

TrayPresence::TrayPresence(AppState& state, std::function<void()> openWindow, QObject* parent)
    : QObject(parent), state_(state), icon_(new QSystemTrayIcon(this)), menu_(new QMenu),
      panel_(new MenuBarPanel(state, std::move(openWindow))) {
    panel_->setWindowFlags(Qt::Popup);
    // Desktops that show only a menu for a tray icon still reach the panel's actions.
    menu_->addAction(tr("Show Free Space"), this, &TrayPresence::openPanel);
    menu_->addAction(shownText("Quick Clean"), panel_->quickCleanButton(), &QPushButton::click);
    menu_->addAction(tr("Open Dorvik"), panel_->openDorvikButton(), &QPushButton::click);
    menu_->addSeparator();
    menu_->addAction(tr("Quit"), qApp, &QCoreApplication::quit);
    icon_->setContextMenu(menu_);

    connect(icon_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
                    openPanel();
                }
            });
    BackgroundServices& background = state_.background();
    connect(&background, &BackgroundServices::volumeChanged, this, &TrayPresence::refresh);
    connect(&background, &BackgroundServices::changed, this, &TrayPresence::refresh);
    refresh();
}

TrayPresence::~TrayPresence() {
    delete panel_;
    delete menu_;
}

bool TrayPresence::isShown() const {
    return icon_->isVisible();
}

void TrayPresence::refresh() {
    const BackgroundServices& background = state_.background();
    const TrayLabel label = trayLabel(background.volume(), background.lowSpaceGB());
    icon_->setIcon(Symbols::icon(label.symbol));
    icon_->setToolTip(label.text.isEmpty() ? QStringLiteral("Dorvik")
                                           : QStringLiteral("Dorvik: ") + label.text);
    const bool wanted = background.menuBar() && QSystemTrayIcon::isSystemTrayAvailable();
    icon_->setVisible(wanted);
    if (!wanted) {
        panel_->hide();
    }
    // With nothing in the tray, closing the last window is the way out.
    QApplication::setQuitOnLastWindowClosed(!wanted);
}

void TrayPresence::openPanel() {
    panel_->adjustSize();
    const QRect iconArea = icon_->geometry();
    const QPoint anchor = iconArea.isValid() ? iconArea.center() : QCursor::pos();
    const QScreen* screen = QGuiApplication::screenAt(anchor);
    const QRect space = screen != nullptr ? screen->availableGeometry()
                                          : QGuiApplication::primaryScreen()->availableGeometry();
    const QSize size = panel_->sizeHint().expandedTo(panel_->minimumSizeHint());
    // Below the icon in a bar at the top, above it in a bar at the bottom, inside the screen.
    int y = anchor.y() + 8;
    if (y + size.height() > space.bottom()) {
        y = anchor.y() - 8 - size.height();
    }
    const int x = std::clamp(anchor.x() - size.width() / 2, space.left(),
                             std::max(space.left(), space.right() - size.width()));
    panel_->move(x, std::max(space.top(), y));
    panel_->show();
    panel_->raise();
    panel_->activateWindow();
}

} // namespace dorvik
