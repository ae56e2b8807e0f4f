#include "platform/Volume.h"
#include "support/TempDir.h"
#include "system/VolumeInfo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace dorvik {
namespace {

TEST(VolumeInfo, RootAgreesWithTheSystemsOwnFigures) {
    const auto volume = volumeInfo("/");
    ASSERT_TRUE(volume.has_value());
    std::istringstream figures(test::commandOutput("stat -f -c '%b %S' /"));
    int64_t blocks = 0;
    int64_t blockSize = 0;
    figures >> blocks >> blockSize;
    EXPECT_EQ(volume->total, blocks * blockSize);
    EXPECT_GT(volume->total, 0);
    EXPECT_GE(volume->available, 0);
    EXPECT_LE(volume->available, volume->total);
    // Linux purges nothing on demand.
    EXPECT_EQ(volume->availableForImportantUsage, volume->available);
    EXPECT_EQ(volume->purgeable(), 0);
    EXPECT_FALSE(volume->name.empty());
    if (!std::filesystem::exists("/dev/disk/by-label")) {
        EXPECT_EQ(volume->name, "Macintosh HD");
    }
}

TEST(VolumeInfo, AbsentWhenThePathCannotBeRead) {
    test::TempDir temp;
    EXPECT_FALSE(volumeInfo(temp / "missing").has_value());
}

TEST(VolumeInfo, AMountWithoutDeviceHasTheFallbackName) {
    const auto volume = volumeInfo("/proc");
    ASSERT_TRUE(volume.has_value());
    EXPECT_EQ(volume->name, "Macintosh HD");
}

TEST(VolumeInfo, PurgeableIsWhatImportantUsageAddsAndMayBeNegative) {
    EXPECT_EQ((VolumeInfo{"Disk", 100, 40, 55}).purgeable(), 15);
    EXPECT_EQ((VolumeInfo{"Disk", 100, 40, 30}).purgeable(), -10);
}

TEST(VolumeInfo, LabelIsTheLinkThatPointsAtTheDevice) {
    test::TempDir temp;
    test::writeFile(temp / "dev/vda1", 1);
    test::writeFile(temp / "dev/vda2", 1);
    test::makeFolder(temp / "by-label");
    test::makeSymlink("../dev/vda1", temp / "by-label/Backup\\x20Disk");
    test::makeSymlink("../dev/vda2", temp / "by-label/Other");
    test::makeSymlink("../dev/gone", temp / "by-label/Dangling");
    const struct {
        std::string device;
        std::string folder;
        std::optional<std::string> label;
    } cases[] = {
        {temp / "dev/vda1", temp / "by-label", "Backup Disk"},
        {temp / "dev/../dev/vda2", temp / "by-label", "Other"},
        {temp / "dev/vda3", temp / "by-label", std::nullopt},
        {temp / "dev/vda1", temp / "no-such-folder", std::nullopt},
    };
    test::writeFile(temp / "dev/vda3", 1);
    for (const auto& [device, folder, label] : cases) {
        EXPECT_EQ(platform::labelOfDevice(device, folder), label) << device;
    }
}

} // namespace
} // namespace dorvik
