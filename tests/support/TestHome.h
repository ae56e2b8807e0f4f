#pragma once

// A home folder and a data folder of the test's own. HOME and XDG_DATA_HOME point at them for the
// life of the object (and so for the programs the test starts), so that nothing reaches the
// user's own files or Trash.

#include "support/Environment.h"
#include "support/TempDir.h"

#include <string>

namespace dorvik::test {

struct TestHome {
    TestHome();

    TempDir dir;
    std::string home;       // dir/home, made
    std::string dataHome;   // dir/data
    std::string trashFiles; // where the home trash keeps what it holds

private:
    ScopedEnvironment homeVariable_;
    ScopedEnvironment dataVariable_;
};

} // namespace dorvik::test
