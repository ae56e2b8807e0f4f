#include "platform/RunningApplications.h"
#include "support/Bundles.h"
#include "support/ChildProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik::platform {
namespace {

TEST(RunningApplications, BundleOfExecutable) {
    const struct {
        std::string executable;
        std::optional<std::string> bundle;
    } cases[] = {
        {"/Applications/Foo.app/Contents/MacOS/Foo", "/Applications/Foo.app"},
        {"/Applications/Foo.app/Contents/MacOS/bin/helper", "/Applications/Foo.app"},
        // the innermost bundle is the application that runs
        {"/Applications/Foo.app/Contents/Helpers/Bar.app/Contents/MacOS/Bar",
         "/Applications/Foo.app/Contents/Helpers/Bar.app"},
        {"/opt/My App.app/Contents/MacOS/My App (deleted)", "/opt/My App.app"},
        {"/Applications/Foo.app/Contents/Resources/tool", std::nullopt},
        {"/Applications/Foo.app/Contents/MacOS/", std::nullopt},
        {"/Applications/Foo.app/Contents/MacOS", std::nullopt},
        {"/Applications/.app/Contents/MacOS/x", std::nullopt},
        {".app/Contents/MacOS/x", std::nullopt},
        {"/Applications/Foo.APP/Contents/MacOS/Foo", std::nullopt},
        {"/usr/bin/sleep", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [executable, bundle] : cases) {
        EXPECT_EQ(bundleOfExecutable(executable), bundle) << executable;
    }
}

TEST(RunningApplications, ARunningBundleIsReportedUntilItEnds) {
    test::TempDir dir;
    const std::string bundle = dir / "Sleeper.app";
    test::writeInfoPlist(bundle, {{"CFBundleIdentifier", "com.example.platform-sleeper"},
                                  {"CFBundleExecutable", "Sleeper"}});
    const std::string executable = test::installExecutable(bundle, "/bin/sleep", "Sleeper");
    const auto isRunning = [] {
        const auto running = runningApplicationIdentifiers();
        return std::ranges::find(running, "com.example.platform-sleeper") != running.end();
    };
    EXPECT_FALSE(isRunning());
    test::ChildProcess process(executable, {"60"});
    EXPECT_TRUE(isRunning());
    process.stop();
    EXPECT_FALSE(isRunning());
}

} // namespace
} // namespace dorvik::platform
