#pragma once

// A small filesystem of its own (tmpfs), or a second view of a folder (a bind mount, on the same
// filesystem), mounted on a folder for the life of the object, for the tests of what happens at a
// mount's edge. Only root may mount; elsewhere `mounted()` is false and `whyNot()` says so, for
// the test to skip with.

#include <string>

namespace dorvik::test {

class ScratchMount {
public:
    // Makes the folder if needed and mounts a tmpfs of `size` ("16m") on it.
    explicit ScratchMount(std::string folder, const std::string& size = "16m");

    // The folder `source` shown again at `folder` (made if needed): the same filesystem, the same
    // device number, another mount.
    struct BindOf {
        std::string source;
    };
    ScratchMount(std::string folder, const BindOf& bind);
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
