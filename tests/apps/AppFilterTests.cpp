// What the Applications page keeps under its search and toggles, and when an application may
// not be uninstalled.

#include "apps/AppFilter.h"
#include "apps/UninstallRefusal.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

InstalledApp makeApp(std::string name, std::optional<std::string> bundleID,
                     std::optional<double> lastUsed, bool isApple = false) {
    InstalledApp app;
    app.path = "/Applications/" + name + ".app";
    app.name = std::move(name);
    app.bundleID = std::move(bundleID);
    app.lastUsed = lastUsed;
    app.isApple = isApple;
    return app;
}

TEST(AppFilter, TogglesAndSearch) {
    constexpr double now = 1'800'000'000;
    const InstalledApp writer = makeApp("Writer Pro", "com.example.writer", now - 60);
    const InstalledApp notes = makeApp("Notes", "com.apple.Notes", now - 100 * 86400.0, true);
    const InstalledApp never = makeApp("Ledger", std::nullopt, std::nullopt);
    const InstalledApp atBoundary = makeApp("Edge", "org.edge", now - unusedAfterSeconds);
    const InstalledApp pastBoundary = makeApp("Past", "org.past", now - unusedAfterSeconds - 1);
    const InstalledApp cafe = makeApp("Café Über", "net.cafe", now);

    const struct {
        AppFilter filter;
        const InstalledApp& app;
        bool kept;
    } cases[] = {
        {{}, notes, true},
        {{"", true, false}, notes, false},
        {{"", true, false}, writer, true},
        // Unused means more than 90 days: exactly 7,776,000 seconds is still in use.
        {{"", false, true}, atBoundary, false},
        {{"", false, true}, pastBoundary, true},
        {{"", false, true}, writer, false},
        // Never known to be used counts as the distant past.
        {{"", false, true}, never, true},
        {{"", true, true}, notes, false},
        // The name first, then the identifier, case aside.
        {{"writer", false, false}, writer, true},
        {{"EXAMPLE", false, false}, writer, true},
        {{"pro", false, false}, writer, true},
        {{"apple", false, false}, writer, false},
        {{"ledger", false, false}, never, true},
        {{"com.", false, false}, never, false},
        {{"café ü", false, false}, cafe, true},
        {{"CAFÉ", false, false}, cafe, true},
        {{"pro", false, true}, writer, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(keeps(c.filter, c.app, now), c.kept)
            << c.app.name << " search \"" << c.filter.search << "\" hideApple "
            << c.filter.hideApple << " unused " << c.filter.unusedOnly;
    }

    const std::vector<InstalledApp> all{writer, notes, never, atBoundary, pastBoundary};
    const std::vector<InstalledApp> unused = filtered(all, {"", true, true}, now);
    ASSERT_EQ(unused.size(), 2u);
    EXPECT_EQ(unused[0].name, "Ledger");
    EXPECT_EQ(unused[1].name, "Past");
}

TEST(UninstallRefusal, AppleBeforeRunning) {
    const InstalledApp writer = makeApp("Writer", "com.example.writer", std::nullopt);
    const InstalledApp notes = makeApp("Notes", "com.apple.Notes", std::nullopt, true);
    const InstalledApp anonymous = makeApp("Tool", std::nullopt, std::nullopt);
    const std::vector<std::string> none;
    const std::vector<std::string> running{"com.example.writer", "com.apple.Notes"};
    const struct {
        const InstalledApp& app;
        const std::vector<std::string>& running;
        std::optional<UninstallRefusal> refusal;
    } cases[] = {
        {writer, none, std::nullopt},           {writer, running, UninstallRefusal::running},
        {notes, none, UninstallRefusal::apple}, {notes, running, UninstallRefusal::apple},
        {anonymous, running, std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(uninstallRefusal(c.app, c.running), c.refusal)
            << c.app.name << " with " << c.running.size() << " running";
    }
    EXPECT_EQ(refusalNote(UninstallRefusal::apple), "Apple app: Dorvik doesn\u2019t uninstall it.");
    EXPECT_EQ(refusalNote(UninstallRefusal::running), "Quit the app to uninstall it.");
}

} // namespace
} // namespace dorvik
