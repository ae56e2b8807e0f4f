#include "support/ReflinkMount.h"

#include "support/TempDir.h"

#include <cstdlib>
#include <sys/mount.h>

namespace dorvik::test {

ReflinkMount::ReflinkMount(const std::string& work)
    : folder_(work + "/xfs"), image_(work + "/xfs.img") {
    if (!ignoresPermissions()) {
        whyNot_ = "a loop-mounted XFS image with reflinks needs root";
        return;
    }
    if (std::system("command -v mkfs.xfs >/dev/null 2>&1") != 0) {
        whyNot_ = "mkfs.xfs is not installed (package xfsprogs)";
        return;
    }
    makeFolder(folder_);
    // 300 MiB is the least XFS accepts; the image is sparse, so it costs only what is written.
    const std::string make = "truncate -s 320M '" + image_ + "' && mkfs.xfs -q -m reflink=1 '" +
                             image_ + "' && mount -o loop '" + image_ + "' '" + folder_ + "'";
    if (std::system(make.c_str()) != 0) {
        whyNot_ = "cannot make and loop-mount an XFS image here";
        return;
    }
    mounted_ = true;
}

ReflinkMount::~ReflinkMount() {
    if (mounted_) {
        // A lazy unmount lets go of the loop device once the last file is closed.
        umount2(folder_.c_str(), MNT_DETACH);
    }
}

} // namespace dorvik::test
