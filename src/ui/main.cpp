// The desktop application: the appearance, the one AppState, the main window, and the event loop
// until "Quit". With --screenshot it draws the window into a file instead and ends.

#include "state/AppState.h"
#include "state/Settings.h"
#include "ui/Appearance.h"
#include "ui/LaunchOptions.h"
#include "ui/LinuxWording.h"
#include "ui/Screenshot.h"
#include "ui/Symbols.h"
#include "ui/shell/RootView.h"
#include "ui/tray/TrayPresence.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>
#include <cstdlib>

namespace {

QtMessageHandler defaultMessageHandler = nullptr;

// The off-screen platform warns at every window it cannot size by hints; that says nothing about
// the picture.
void quietOffscreenHints(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (!text.contains(QLatin1String("does not support propagateSizeHints"))) {
        defaultMessageHandler(type, context, text);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (dorvik::asksForHelp(argc, argv)) {
        std::fputs(dorvik::launchUsage().toLocal8Bit().constData(), stdout);
        return 0;
    }
    // A screenshot needs no display.
    if (dorvik::asksForScreenshot(argc, argv)) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        defaultMessageHandler = qInstallMessageHandler(quietOffscreenHints);
    }
    QApplication app(argc, argv);
    QApplication::setOrganizationName(dorvik::settingsOrganisation);
    QApplication::setApplicationName(dorvik::settingsApplication);
    QApplication::setDesktopFileName(QStringLiteral("dorvik"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/dorvik.svg")));
    dorvik::LinuxWording wording;
    QApplication::installTranslator(&wording);

    dorvik::LaunchOptions options;
    try {
        QStringList arguments = QApplication::arguments();
        arguments.removeFirst();
        options = dorvik::parseLaunchOptions(arguments);
    } catch (const dorvik::LaunchOptionsError& error) {
        std::fprintf(stderr, "dorvik: %s\n%s", error.what(),
                     dorvik::launchUsage().toLocal8Bit().constData());
        return 2;
    }

    const QPalette desktopPalette = QApplication::palette();
    QApplication::setStyle(QStringLiteral("Fusion"));
    dorvik::Symbols::useIconTheme();
    dorvik::AppearanceController appearance(desktopPalette);
    appearance.apply(options.appearance);

    dorvik::AppState state;
    if (options.section) {
        state.setSection(*options.section);
    }
    dorvik::RootView window(state, appearance);
    if (!options.screenshotFile.isEmpty()) {
        if (!dorvik::saveScreenshot(window, state, options.size, options.screenshotFile)) {
            std::fprintf(stderr, "dorvik: could not write %s\n",
                         options.screenshotFile.toLocal8Bit().constData());
            return 1;
        }
        return 0;
    }
    window.resize(1120, 720);
    window.show();
    // The background starts once the window is up; the tray follows its setting from here on.
    state.background().start(state);
    dorvik::TrayPresence tray(state, [&window] {
        window.showNormal();
        window.raise();
        window.activateWindow();
    });
    return QApplication::exec();
}
