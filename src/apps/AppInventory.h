#pragma once

// Which applications are installed, and which items of the user's Library belong to each. The
// matching rule here is shared by the application list, the leftovers search and the removed-app
// watcher.

#include "apps/InstalledApp.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::AppInventory {

// One thing directly inside a Library location.
struct LibraryEntry {
    std::string path;
    std::string name;  // the last path component
    std::string label; // the location's short name

    bool operator==(const LibraryEntry&) const = default;
};

struct LibraryLocation {
    std::string_view relativePath; // from the home folder
    std::string_view label;
};

inline constexpr std::array<LibraryLocation, 12> libraryLocations{{
    {"Library/Application Support", "Application Support"},
    {"Library/Caches", "Caches"},
    {"Library/Containers", "Container"},
    {"Library/Group Containers", "Group Container"},
    {"Library/Preferences", "Preferences"},
    {"Library/Saved Application State", "Window State"},
    {"Library/Logs", "Logs"},
    {"Library/HTTPStorages", "Web Storage"},
    {"Library/WebKit", "WebKit"},
    {"Library/Cookies", "Cookies"},
    {"Library/LaunchAgents", "Launch Agent"},
    {"Library/Application Scripts", "Scripts"},
}};

// Where applications are looked for, in order: "/Applications", ~/Applications and
// "/Applications/Utilities" (the system ones below DORVIK_SYSTEM_ROOT when tests set it).
std::vector<std::string> applicationRoots();

// The bundles in these roots and one folder level below them, each path once, in the order met.
std::vector<std::string> applicationPaths(const std::vector<std::string>& roots);
std::vector<std::string> applicationPaths();

// The top level of each Library location under the home folder, in location order and listing
// order. Without full disk access the two container locations are not read at all.
std::vector<LibraryEntry> libraryEntries(const std::string& homeDirectory, bool fullDiskAccess);
std::vector<LibraryEntry> libraryEntries();

// Whether a Library item of this name belongs to the application; see the steps in the source.
bool matches(std::string_view entryName, std::string_view bundleID, std::string_view appName);

// The bundle's file name without its extension: "Writer" for /Applications/Writer.app.
std::string bundleFileName(std::string_view bundlePath);

// The name an application is shown by, from its Info.plist strings (empty for no bundle).
std::string appName(std::string_view bundlePath, const std::map<std::string, std::string>& info);

// Everything about one bundle, its related items chosen among `entries` and measured.
InstalledApp inspectBundle(const std::string& bundlePath, const std::vector<LibraryEntry>& entries);

// Every application found, the bundles and the Flatpak apps, inspected on `threads` threads,
// largest total first.
std::vector<InstalledApp> loadAll(int threads);

// A bundle with this identifier in the application roots, in folders up to four levels below
// them: the system still knows an application that lies there. None otherwise.
std::optional<std::string> applicationWithIdentifier(std::string_view bundleID);

} // namespace dorvik::AppInventory
