#include "platform/Reflink.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dorvik::platform {

std::optional<LinkStatus> linkStatus(const std::string& path) {
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) {
        return std::nullopt;
    }
    return LinkStatus{
        .regularFile = S_ISREG(st.st_mode),
        .device = static_cast<uint64_t>(st.st_dev),
        .links = static_cast<uint64_t>(st.st_nlink),
        .size = static_cast<int64_t>(st.st_size),
        .blocks = static_cast<int64_t>(st.st_blocks),
        .changed =
            static_cast<double>(st.st_ctim.tv_sec) + static_cast<double>(st.st_ctim.tv_nsec) / 1e9,
    };
}

std::optional<int64_t> privateSize(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0) {
        return std::nullopt;
    }
    // The extents come in batches; each batch starts where the last one ended.
    constexpr unsigned batch = 64;
    std::vector<uint8_t> storage(sizeof(fiemap) + batch * sizeof(fiemap_extent));
    auto* map = reinterpret_cast<fiemap*>(storage.data());
    int64_t privateBytes = 0;
    uint64_t start = 0;
    bool last = false;
    while (!last) {
        std::fill(storage.begin(), storage.end(), 0);
        map->fm_start = start;
        map->fm_length = FIEMAP_MAX_OFFSET - start;
        map->fm_extent_count = batch;
        if (ioctl(fd, FS_IOC_FIEMAP, map) != 0) {
            close(fd);
            return std::nullopt;
        }
        if (map->fm_mapped_extents == 0) {
            break;
        }
        for (unsigned index = 0; index < map->fm_mapped_extents; ++index) {
            const fiemap_extent& extent = map->fm_extents[index];
            if ((extent.fe_flags & FIEMAP_EXTENT_SHARED) == 0) {
                privateBytes += static_cast<int64_t>(extent.fe_length);
            }
            start = extent.fe_logical + extent.fe_length;
            last = last || (extent.fe_flags & FIEMAP_EXTENT_LAST) != 0;
        }
    }
    close(fd);
    return privateBytes;
}

int cloneFile(const std::string& original, const std::string& clone) {
    const int source = open(original.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (source < 0) {
        return errno;
    }
    const int target =
        open(clone.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (target < 0) {
        const int error = errno;
        close(source);
        return error;
    }
    int error = ioctl(target, FICLONE, source) == 0 ? 0 : errno;
    if (close(target) != 0 && error == 0) {
        error = errno;
    }
    close(source);
    if (error != 0) {
        unlink(clone.c_str());
    }
    return error;
}

bool meansCloningUnsupported(int errorNumber) {
    return errorNumber == EOPNOTSUPP || errorNumber == ENOTTY || errorNumber == EXDEV ||
           errorNumber == EINVAL;
}

int renameOver(const std::string& from, const std::string& to) {
    return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

} // namespace dorvik::platform
