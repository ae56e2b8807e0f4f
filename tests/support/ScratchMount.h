#pragma once

// A small filesystem of its own (tmpfs) mounted on a folder for the life of the object, for the
// tests of what happens at a filesystem's edge. Only root may mount; elsewhere `mounted()` is
// false and `whyNot()` says so, for the test to skip with.

#include <string>

namespace dorvik::test {

class ScratchMount {
public:
    // Makes the folder if needed and mounts on it.
    explicit ScratchMount(std::string folder);
    ~ScratchMount();
    ScratchMount(const ScratchMount&) = delete;
    ScratchMount& operator=(const ScratchMount&) = delete;

    bool mounted() const { return mounted_; }
    const std::string& whyNot() const { return whyNot_; }

private:
    std::string folder_;
    bool mounted_ = false;
    std::string whyNot_;
};

} // namespace dorvik::test
