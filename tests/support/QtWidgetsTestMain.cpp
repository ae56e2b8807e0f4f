// main() for test programs of the desktop application: a QApplication drawn off screen, dressed
// as the program dresses itself, with the settings and files of the whole run in a private
// temporary folder, never the user's own.

#include "support/Environment.h"
#include "support/TempDir.h"
#include "ui/Appearance.h"
#include "ui/Symbols.h"

#include <QApplication>
#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    dorvik::test::TempDir home;
    dorvik::test::usePrivateFolders(home.path());
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    const QPalette desktopPalette = QApplication::palette();
    QApplication::setStyle(QStringLiteral("Fusion"));
    dorvik::Symbols::useIconTheme();
    dorvik::AppearanceController(desktopPalette).apply(dorvik::AppAppearance::light);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
