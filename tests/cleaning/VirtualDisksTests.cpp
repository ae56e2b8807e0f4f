// The virtual disks among the files of a real scan: sparse files with blocks reserved for what
// they hold and a length for what they may grow to.

#include "cleaning/VirtualDisks.h"
#include "scanning/MarkRemoved.h"
#include "scanning/Scanner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

namespace dorvik {
namespace {

constexpr int64_t MB = 1'000'000;
constexpr int64_t GB = 1'000'000'000;

ScanResult scanOf(const std::string& root) {
    Scanner scanner({.threads = oneThread});
    auto scan = scanner.scan(root, {}, nullptr);
    EXPECT_TRUE(scan) << root;
    return scan ? std::move(*scan) : ScanResult{};
}

TEST(VirtualDisks, ByExtensionOwnerAndSizeWithTheOwnersAdvice) {
    test::TempDir dir;
    const struct {
        std::string path;
        int64_t allocated;
        int64_t length;
        std::optional<std::string> owner; // listed as, if listed
    } cases[] = {
        // Raw images need a known owner or a length of 8 GB.
        {"disks/linux.raw", 600 * MB, 6 * GB, {}},
        {"Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw", 640 * MB, 6 * GB,
         "Docker Desktop"},
        {"disks/big.img", 600 * MB, 9 * GB, "Virtual disk"},
        {"disks/almost.img", 610 * MB, 8 * GB - 1, {}},
        {"disks/exactly.IMG", 620 * MB, 8 * GB, "Virtual disk"},
        // The 500 MB floor is on allocated bytes, whatever the length.
        {"VMs/win.vmdk", 400 * MB, 400 * MB, {}},
        {"VMs/sparse.vmdk", 0, 60 * GB, {}},
        {"VMs/Small.QCOW2", 560 * MB, 560 * MB, "Virtual disk"},
        {"VirtualBox VMs/Win/Win.vdi", 530 * MB, 20 * GB, "VirtualBox"},
        {".android/avd/Pixel.avd/userdata-qemu.img", 650 * MB, 2 * GB, "Android Emulator"},
        // The first owner of the table that the path names wins.
        {"Podman/machine.utm/Data/disk.qcow2", 540 * MB, 10 * GB, "Podman"},
        {".colima/default/colima.raw", 545 * MB, 2 * GB, "Colima"},
        // Where Linux keeps them.
        {".docker/desktop/vms/0/data/Docker.raw", 550 * MB, 64 * GB, "Docker Desktop"},
        {".local/share/libvirt/images/fedora.img", 555 * MB, 4 * GB, "libvirt"},
        // Not a disk's extension, or none at all.
        {"VMs/notes.txt", 600 * MB, 600 * MB, {}},
        {"VMs/qcow2", 600 * MB, 600 * MB, {}},
        {"VMs/.vmdk", 600 * MB, 600 * MB, {}},
    };
    for (const auto& c : cases) {
        test::writeAllocatedFile(dir / c.path, c.allocated, c.length);
    }
    const ScanResult scan = scanOf(dir.path());
    const std::vector<VirtualDisk> disks = virtualDisks(scan.files);

    std::map<std::string, const VirtualDisk*> found;
    for (const VirtualDisk& disk : disks) {
        found[disk.path] = &disk;
    }
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const auto disk = found.find(dir / c.path);
        ASSERT_EQ(disk != found.end(), c.owner.has_value());
        if (disk == found.end()) {
            continue;
        }
        const VirtualDisk& listed = *disk->second;
        EXPECT_EQ(listed.owner, *c.owner);
        EXPECT_EQ(listed.name, std::filesystem::path(c.path).filename().string());
        EXPECT_EQ(listed.size, test::allocatedBytes(dir / c.path));
        EXPECT_EQ(listed.capacity, c.length);
        EXPECT_GT(listed.modified, 1'700'000'000);
        const DiskAdvice advice = diskAdvice(*c.owner);
        EXPECT_EQ(listed.advice, advice.advice);
        EXPECT_EQ(listed.command.has_value(), advice.command.has_value());
    }
    // Largest first.
    for (size_t i = 1; i < disks.size(); ++i) {
        EXPECT_GE(disks[i - 1].size, disks[i].size) << disks[i].path;
    }
    ASSERT_FALSE(disks.empty());
    EXPECT_EQ(disks.front().path, dir / ".android/avd/Pixel.avd/userdata-qemu.img");
}

TEST(VirtualDisks, TheAdviceOfEachOwner) {
    const DiskAdvice docker = diskAdvice("Docker Desktop");
    EXPECT_EQ(docker.command, "docker system prune");
    EXPECT_TRUE(docker.advice.starts_with("Remove the images, containers and build cache"));
    const DiskAdvice android = diskAdvice("Android Emulator");
    EXPECT_FALSE(android.command);
    EXPECT_TRUE(android.advice.starts_with("Each virtual device keeps its own disk."));
    for (const std::string_view owner : {"UTM", "VirtualBox", "Virtual disk", "libvirt"}) {
        const DiskAdvice other = diskAdvice(owner);
        EXPECT_FALSE(other.command) << owner;
        EXPECT_TRUE(other.advice.starts_with("Deleting files inside the virtual machine")) << owner;
    }
    // The table of the owners keeps its order, Linux's places after the others.
    ASSERT_GE(diskOwners().size(), 11u);
    EXPECT_EQ(diskOwners()[0].owner, "Docker Desktop");
    EXPECT_EQ(diskOwners()[10].marker, "virtualbox vms");
}

// Allocation comes in whole blocks, so the floor is tried to the byte on nodes made by hand; a
// node marked removed is gone from the list.
TEST(VirtualDisks, TheFloorToTheByteAndRemovedDisksLeaveTheList) {
    const auto root = std::make_shared<FileNode>("/System/Volumes/Data/vm", true, false,
                                                 FileKind::other, StorageBucket::other);
    ScanResult scan;
    scan.root = root;
    const int64_t sizes[] = {499'999'999, 500'000'000, 500'000'001};
    for (size_t i = 0; i < std::size(sizes); ++i) {
        auto file = std::make_shared<FileNode>("disk" + std::to_string(i) + ".vhdx", false, false,
                                               FileKind::diskImage, StorageBucket::other);
        file->size = sizes[i];
        file->logicalSize = 100 * GB;
        FileNode::adopt(root, file);
        scan.files.push_back(file);
    }
    std::vector<VirtualDisk> disks = virtualDisks(scan.files);
    ASSERT_EQ(disks.size(), 2u);
    // The data volume's prefix is taken off.
    EXPECT_EQ(disks[0].path, "/vm/disk2.vhdx");
    EXPECT_EQ(disks[1].path, "/vm/disk1.vhdx");

    markRemoved(scan, {"/System/Volumes/Data/vm/disk2.vhdx"});
    disks = virtualDisks(scan.files);
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].path, "/vm/disk1.vhdx");
}

} // namespace
} // namespace dorvik
