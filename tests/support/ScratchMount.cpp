#include "support/ScratchMount.h"

#include "support/TempDir.h"

#include <cerrno>
#include <cstring>
#include <sys/mount.h>

namespace dorvik::test {

ScratchMount::ScratchMount(std::string folder, const std::string& size)
    : folder_(std::move(folder)) {
    makeFolder(folder_);
    if (!ignoresPermissions()) {
        whyNot_ = "mounting a scratch filesystem needs root";
        return;
    }
    if (mount("dorvik-test", folder_.c_str(), "tmpfs", MS_NOSUID | MS_NODEV,
              ("size=" + size).c_str()) != 0) {
        whyNot_ = std::string("cannot mount a tmpfs here: ") + std::strerror(errno);
        return;
    }
    mounted_ = true;
}

ScratchMount::ScratchMount(std::string folder, const BindOf& bind) : folder_(std::move(folder)) {
    makeFolder(folder_);
    if (!ignoresPermissions()) {
        whyNot_ = "a bind mount needs root";
        return;
    }
    if (mount(bind.source.c_str(), folder_.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        whyNot_ = std::string("cannot bind-mount here: ") + std::strerror(errno);
        return;
    }
    mounted_ = true;
}

ScratchMount::~ScratchMount() {
    if (mounted_) {
        umount2(folder_.c_str(), MNT_DETACH);
    }
}

} // namespace dorvik::test
