// main() for test programs that need a Qt event loop. The settings and the application's files
// of the whole run go to a private temporary folder, never to the user's own.

#include "support/Environment.h"
#include "support/TempDir.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    dorvik::test::TempDir home;
    dorvik::test::usePrivateFolders(home.path());
    QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
