#include "support/TestHome.h"

namespace dorvik::test {

TestHome::TestHome()
    : home(dir / "home"), dataHome(dir / "data"), trashFiles(dataHome + "/Trash/files"),
      homeVariable_("HOME", home), dataVariable_("XDG_DATA_HOME", dataHome) {
    makeFolder(home);
}

} // namespace dorvik::test
