#include "cleaning/VirtualDisks.h"

#include "base/PathNames.h"

#include <algorithm>
#include <array>

namespace dorvik {

namespace {

constexpr auto owners = std::to_array<DiskOwner>({
    {"com.docker.docker", "Docker Desktop"},
    {"orbstack", "OrbStack"},
    {"/.colima/", "Colima"},
    {"/.lima/", "Lima"},
    {"podman", "Podman"},
    {"/.android/avd/", "Android Emulator"},
    {"com.utmapp.utm", "UTM"},
    {".utm/", "UTM"},
    {".pvm/", "Parallels Desktop"},
    {".vmwarevm/", "VMware Fusion"},
    {"virtualbox vms", "VirtualBox"},
    // Where the same tools, and those of a Linux desktop, keep their disks on Linux.
    {"/.docker/desktop/", "Docker Desktop"},
    {"/gnome-boxes/", "GNOME Boxes"},
    {"/libvirt/", "libvirt"},
    {"multipass", "Multipass"},
});

constexpr auto imageExtensions = std::to_array<std::string_view>(
    {"qcow2", "vmdk", "vdi", "vhd", "vhdx", "hdd", "hds", "sparseimage"});

constexpr auto rawExtensions = std::to_array<std::string_view>({"raw", "img"});

constexpr DiskAdvice dockerAdvice = {
    "Remove the images, containers and build cache you no longer use with the command below. If "
    "the file doesn\u2019t shrink afterwards, Docker Desktop \u203a Troubleshoot \u203a Clean / "
    "Purge data resets it (that removes all images and containers).",
    "docker system prune"};

constexpr DiskAdvice androidAdvice = {
    "Each virtual device keeps its own disk. Wipe its data or delete the devices you no longer "
    "use in Android Studio \u203a Device Manager.",
    std::nullopt};

constexpr DiskAdvice otherAdvice = {
    "Deleting files inside the virtual machine doesn\u2019t give the space back to your Mac. "
    "Compact the disk from the app that owns it, or delete the machine there if you no longer "
    "use it.",
    std::nullopt};

const DiskOwner* ownerOf(std::string_view lowerCasePath) {
    const auto found = std::ranges::find_if(owners, [lowerCasePath](const DiskOwner& row) {
        return lowerCasePath.find(row.marker) != std::string_view::npos;
    });
    return found == owners.end() ? nullptr : &*found;
}

bool contains(std::span<const std::string_view> list, std::string_view value) {
    return std::ranges::find(list, value) != list.end();
}

} // namespace

std::span<const DiskOwner> diskOwners() {
    return owners;
}

std::span<const std::string_view> diskImageExtensions() {
    return imageExtensions;
}

std::span<const std::string_view> rawImageExtensions() {
    return rawExtensions;
}

DiskAdvice diskAdvice(std::string_view owner) {
    if (owner == "Docker Desktop") {
        return dockerAdvice;
    }
    if (owner == "Android Emulator") {
        return androidAdvice;
    }
    return otherAdvice;
}

std::vector<VirtualDisk> virtualDisks(const std::vector<FileNodePtr>& files) {
    std::vector<VirtualDisk> disks;
    for (const FileNodePtr& file : files) {
        if (file->deleted || file->size < diskMinimumSize) {
            continue;
        }
        // The extension is the name's: it rules a file out before its path is put together.
        const std::string extension = lowerCaseExtension(file->name);
        const bool image = contains(imageExtensions, extension);
        if (!image && !contains(rawExtensions, extension)) {
            continue;
        }
        std::string path = canonicalPath(file->path());
        const DiskOwner* owner = ownerOf(asciiLowerCase(path));
        if (!image && owner == nullptr && file->logicalSize < rawDiskMinimumCapacity) {
            continue;
        }
        const std::string_view ownerName = owner != nullptr ? owner->owner : unknownDiskOwner;
        const DiskAdvice advice = diskAdvice(ownerName);
        disks.push_back(VirtualDisk{
            .path = std::move(path),
            .name = file->name,
            .owner = std::string(ownerName),
            .size = file->size,
            .capacity = file->logicalSize,
            .modified = file->modified,
            .advice = std::string(advice.advice),
            .command = advice.command ? std::optional<std::string>(*advice.command) : std::nullopt,
        });
    }
    // Equal sizes by path, so that the same scan always gives the same list.
    std::ranges::sort(disks, [](const VirtualDisk& a, const VirtualDisk& b) {
        return a.size != b.size ? a.size > b.size : a.path < b.path;
    });
    return disks;
}

} // namespace dorvik
