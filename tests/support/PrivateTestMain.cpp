// main() for test programs that start dorvik-cli or otherwise reach the program's settings and
// files: the whole run gets a private home, settings and data folder, never the user's own.

#include "support/Environment.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    dorvik::test::TempDir home;
    dorvik::test::usePrivateFolders(home.path());
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
