#include "support/Environment.h"

#include "support/TempDir.h"

#include <cstdlib>
#include <time.h>

namespace dorvik::test {

ScopedEnvironment::ScopedEnvironment(std::string name, const std::string& value)
    : name_(std::move(name)) {
    if (const char* old = std::getenv(name_.c_str())) {
        previous_ = old;
    }
    setenv(name_.c_str(), value.c_str(), 1);
    tzset(); // the C library caches the time zone; this rereads TZ when that is what changed
}

ScopedEnvironment::~ScopedEnvironment() {
    if (previous_) {
        setenv(name_.c_str(), previous_->c_str(), 1);
    } else {
        unsetenv(name_.c_str());
    }
    tzset();
}

void usePrivateFolders(const std::string& root) {
    setenv("XDG_CONFIG_HOME", (root + "/config").c_str(), 1);
    setenv("XDG_DATA_HOME", (root + "/data").c_str(), 1);
    setenv("HOME", (root + "/home").c_str(), 1);
    makeFolder(root + "/home");
}

} // namespace dorvik::test
