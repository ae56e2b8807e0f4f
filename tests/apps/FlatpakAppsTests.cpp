#include "apps/FlatpakApps.h"
#include "support/Environment.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik {
namespace {

using Flatpak::FlatpakApp;
using Flatpak::Installation;

struct Deployment {
    std::string id;
    std::string name;    // the desktop entry's, none when empty
    std::string version; // the metainfo's newest, none when empty
    int64_t bytes = 0;
};

// Lays out an app the way Flatpak deploys one: <apps>/<id>/x86_64/stable/<commit>, reached
// through the links current and active.
std::string deploy(const std::string& apps, const Deployment& app) {
    const std::string branch = apps + "/" + app.id + "/x86_64/stable";
    const std::string commit = branch + "/4ba3f4ba5ac70db8";
    test::writeText(commit + "/metadata", "[Application]\nname=" + app.id +
                                              "\nruntime=org.example.Platform/x86_64/stable\n");
    test::writeAllocatedFile(commit + "/files/bin/program", app.bytes);
    if (!app.name.empty()) {
        test::writeText(commit + "/export/share/applications/" + app.id + ".desktop",
                        "# made by hand\n[Desktop Entry]\nName[de]=Anders\nName=" + app.name +
                            "\nExec=program\n[Desktop Action new]\nName=New Window\n");
    }
    if (!app.version.empty()) {
        test::writeText(commit + "/files/share/metainfo/" + app.id + ".metainfo.xml",
                        "<component><releases><release date='2026-01-01' version='" + app.version +
                            "'/><release version=\"0.9\"/></releases></component>");
    }
    test::makeSymlink("4ba3f4ba5ac70db8", branch + "/active");
    test::makeSymlink("x86_64/stable", apps + "/" + app.id + "/current");
    return commit;
}

TEST(Flatpak, AppsOfBothInstallationsAreReadFromTheirFiles) {
    test::TestHome testHome;
    test::TempDir system;
    test::ScopedEnvironment root("DORVIK_SYSTEM_ROOT", system.path());
    const std::string userApps = testHome.dataHome + "/flatpak/app";
    const std::string systemApps = system / "var/lib/flatpak/app";
    EXPECT_EQ(platform::flatpakAppsFolder(Installation::user), userApps);
    EXPECT_EQ(platform::flatpakAppsFolder(Installation::system), systemApps);

    const std::string writer = deploy(userApps, {"org.example.Writer", "Writer", "2.4.1", 100000});
    test::writeText(writer + "/export/share/icons/hicolor/64x64/apps/org.example.Writer.png", "x");
    test::writeText(writer + "/export/share/icons/hicolor/128x128/apps/org.example.Writer.png",
                    "x");
    deploy(systemApps, {"org.example.Tool", "", "", 4096});
    // Not apps: a folder without a deployment, and metadata naming another app.
    test::makeFolder(userApps + "/org.example.Empty");
    deploy(userApps, {"org.example.Other", "Other", "", 10});
    test::writeText(userApps + "/org.example.Other/x86_64/stable/4ba3f4ba5ac70db8/metadata",
                    "[Application]\nname=org.example.Elsewhere\n");

    const auto apps = Flatpak::installedApps();
    ASSERT_EQ(apps.size(), 2u);
    const FlatpakApp& user = apps[0];
    EXPECT_EQ(user.id, "org.example.Writer");
    EXPECT_EQ(user.installation, Installation::user);
    EXPECT_EQ(user.folder, userApps + "/org.example.Writer");
    EXPECT_EQ(user.deployed, writer);
    EXPECT_EQ(user.name, "Writer");
    EXPECT_EQ(user.version, "2.4.1");
    EXPECT_EQ(user.icon,
              writer + "/export/share/icons/hicolor/128x128/apps/org.example.Writer.png");
    const FlatpakApp& tool = apps[1];
    EXPECT_EQ(tool.installation, Installation::system);
    EXPECT_EQ(tool.name, "org.example.Tool"); // no desktop entry: the identifier
    EXPECT_FALSE(tool.version.has_value());
    EXPECT_FALSE(tool.icon.has_value());
}

TEST(Flatpak, AnAppIsShownWithItsSandboxDataAndWhatMatchesItOutside) {
    test::TestHome testHome;
    const std::string apps = testHome.dataHome + "/flatpak/app";
    deploy(apps, {"org.example.Tool", "Toolbox", "", 300000});
    const std::string data = testHome.home + "/.var/app/org.example.Tool";
    test::writeAllocatedFile(data + "/cache/big", 500000);
    test::writeAllocatedFile(data + "/config/settings", 4096);
    test::writeAllocatedFile(data + "/data/db", 200000);
    // Another app whose identifier begins with this one's keeps its own data.
    test::writeAllocatedFile(testHome.home + "/.var/app/org.example.ToolKit/data/x", 8192);
    test::writeAllocatedFile(testHome.home + "/.config/org.example.ToolKit/x", 8192);
    test::writeAllocatedFile(testHome.home + "/.config/org.example.Tool/x", 8192);
    test::writeAllocatedFile(testHome.home + "/.cache/toolbox/x", 65536);
    for (const char* part : {"", "/cache", "/config", "/data", "/cache/big", "/config/settings"}) {
        test::setModificationTime(data + part, 1'600'000'000.0);
    }
    test::setModificationTime(data + "/data/db", 1'700'000'000.0);

    const auto read =
        Flatpak::readApp(apps + "/org.example.Tool", "org.example.Tool", Installation::user);
    ASSERT_TRUE(read.has_value());
    const InstalledApp app = Flatpak::inspect(*read);
    EXPECT_EQ(app.path, apps + "/org.example.Tool");
    EXPECT_EQ(app.bundleID, "org.example.Tool");
    EXPECT_GE(app.appSize, 300000);
    std::vector<std::pair<std::string, std::string>> related;
    for (const RelatedItem& item : app.related) {
        related.emplace_back(item.path.substr(testHome.home.size()), item.label);
    }
    EXPECT_EQ(related, (std::vector<std::pair<std::string, std::string>>{
                           {"/.var/app/org.example.Tool/cache", "Sandbox Cache"},
                           {"/.var/app/org.example.Tool/data", "Sandbox Data"},
                           {"/.cache/toolbox", "Caches"},
                           {"/.config/org.example.Tool", "Preferences"},
                           {"/.var/app/org.example.Tool/config", "Sandbox Config"},
                       }));
    EXPECT_TRUE(std::ranges::is_sorted(app.related, std::greater{}, &RelatedItem::size));
    EXPECT_EQ(app.lastUsed, 1'700'000'000.0);
    EXPECT_FALSE(app.isApple);
}

} // namespace
} // namespace dorvik
