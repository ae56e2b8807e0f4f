// main() for test programs that need a Qt event loop. The settings and the application's files
// of the whole run go to a private temporary folder, never to the user's own.

#include "support/TempDir.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    dorvik::test::TempDir home;
    setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
    setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
    setenv("HOME", (home / "home").c_str(), 1);
    dorvik::test::makeFolder(home / "home");
    QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
