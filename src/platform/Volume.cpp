#include "platform/Volume.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

namespace dorvik::platform {

namespace {

namespace fs = std::filesystem;

// The device a mount came from, as /proc/self/mountinfo names it: the field after the
// filesystem type, which follows the " - " separator. Lines are matched on "major:minor".
std::optional<std::string> mountSourceOf(dev_t device) {
    std::ifstream mounts("/proc/self/mountinfo");
    const std::string wanted = std::to_string(major(device)) + ":" + std::to_string(minor(device));
    std::string line;
    std::optional<std::string> source;
    while (std::getline(mounts, line)) {
        std::istringstream fields(line);
        std::string mountId, parentId, numbers;
        fields >> mountId >> parentId >> numbers;
        if (numbers != wanted) {
            continue;
        }
        const size_t separator = line.find(" - ");
        if (separator == std::string::npos) {
            continue;
        }
        std::istringstream tail(line.substr(separator + 3));
        std::string type, from;
        if (tail >> type >> from) {
            source = from; // a later mount of the same device says the same
        }
    }
    return source;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

std::string unescapedLabel(const std::string& name) {
    std::string label;
    for (size_t i = 0; i < name.size(); ++i) {
        if (i + 3 < name.size() && name[i] == '\\' && name[i + 1] == 'x' &&
            hexDigit(name[i + 2]) >= 0 && hexDigit(name[i + 3]) >= 0) {
            label += static_cast<char>(hexDigit(name[i + 2]) * 16 + hexDigit(name[i + 3]));
            i += 3;
        } else {
            label += name[i];
        }
    }
    return label;
}

} // namespace

std::optional<VolumeCapacity> volumeCapacity(const std::string& path) {
    struct statvfs figures {};
    if (statvfs(path.c_str(), &figures) != 0) {
        return std::nullopt;
    }
    const auto blockSize = static_cast<int64_t>(figures.f_frsize);
    return VolumeCapacity{static_cast<int64_t>(figures.f_blocks) * blockSize,
                          static_cast<int64_t>(figures.f_bavail) * blockSize};
}

std::optional<std::string> volumeLabel(const std::string& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) {
        return std::nullopt;
    }
    const auto source = mountSourceOf(st.st_dev);
    if (!source || !source->starts_with("/")) {
        return std::nullopt; // tmpfs, overlay and the like have no device and no label
    }
    return labelOfDevice(*source, "/dev/disk/by-label");
}

std::optional<std::string> labelOfDevice(const std::string& device,
                                         const std::string& labelFolder) {
    std::error_code error;
    const fs::path target = fs::canonical(device, error);
    if (error) {
        return std::nullopt;
    }
    for (fs::directory_iterator it(labelFolder, error), end; !error && it != end;
         it.increment(error)) {
        std::error_code linkError;
        if (fs::canonical(it->path(), linkError) == target && !linkError) {
            return unescapedLabel(it->path().filename().string());
        }
    }
    return std::nullopt;
}

} // namespace dorvik::platform
