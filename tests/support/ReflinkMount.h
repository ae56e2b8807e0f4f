#pragma once

// A small XFS filesystem with reflinks, in an image file on a loop device, mounted on a folder for
// the life of the object: where copies can really share their blocks. Needs root and mkfs.xfs;
// elsewhere `mounted()` is false and `whyNot()` says why, for the test to skip with.

#include <string>

namespace dorvik::test {

class ReflinkMount {
public:
    // `work` is a private temporary folder: the image and the mount point go inside it.
    explicit ReflinkMount(const std::string& work);
    ~ReflinkMount();
    ReflinkMount(const ReflinkMount&) = delete;
    ReflinkMount& operator=(const ReflinkMount&) = delete;

    bool mounted() const { return mounted_; }
    const std::string& whyNot() const { return whyNot_; }
    // The mounted filesystem's root folder.
    const std::string& path() const { return folder_; }

private:
    std::string folder_;
    std::string image_;
    bool mounted_ = false;
    std::string whyNot_;
};

} // namespace dorvik::test
