#include "support/ScopedHome.h"

#include <cstdlib>

namespace dorvik::test {

ScopedHome::ScopedHome(const std::string& home) {
    if (const char* value = std::getenv("HOME")) {
        previous_ = value;
    }
    setenv("HOME", home.c_str(), 1);
}

ScopedHome::~ScopedHome() {
    if (previous_) {
        setenv("HOME", previous_->c_str(), 1);
    } else {
        unsetenv("HOME");
    }
}

} // namespace dorvik::test
