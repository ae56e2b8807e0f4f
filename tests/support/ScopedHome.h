#pragma once

// Points HOME at a folder for the life of the object and puts the old value back afterwards, so
// that a home laid out like a Mac's in a temporary folder is used as the real one would be.

#include <optional>
#include <string>

namespace dorvik::test {

class ScopedHome {
public:
    explicit ScopedHome(const std::string& home);
    ~ScopedHome();
    ScopedHome(const ScopedHome&) = delete;
    ScopedHome& operator=(const ScopedHome&) = delete;

private:
    std::optional<std::string> previous_;
};

} // namespace dorvik::test
