#include "apps/AppInventory.h"

#include "apps/FlatpakApps.h"
#include "base/ParallelEach.h"
#include "base/PathNames.h"
#include "platform/Bundle.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/SystemRoot.h"
#include "scanning/MeasureFolder.h"
#include "scanning/WalkThreads.h"
#include "system/FullDiskAccess.h"

#include <algorithm>
#include <set>

namespace dorvik::AppInventory {

namespace {

constexpr std::array<std::string_view, 5> ownSuffixes = {".plist", ".savedstate", ".binarycookies",
                                                         ".helper", ".shipit"};

// How deep below a root the search for an identifier goes; real installations nest a vendor
// folder or two, never more.
constexpr int deepestIdentifierSearch = 4;

bool isBundleName(std::string_view name) {
    return lowerCaseExtension(name) == "app";
}

void keepOnce(const std::string& path, std::set<std::string>& seen,
              std::vector<std::string>& kept) {
    if (seen.insert(path).second) {
        kept.push_back(path);
    }
}

std::optional<std::string> infoString(const std::map<std::string, std::string>& info,
                                      const char* key) {
    const auto found = info.find(key);
    return found == info.end() ? std::nullopt : std::optional(found->second);
}

// The latest of the executable's access time and the related items' modification times.
std::optional<double> lastUseFromFiles(const std::string& bundlePath,
                                       const std::map<std::string, std::string>& info,
                                       const std::vector<RelatedItem>& related) {
    std::optional<double> latest;
    auto consider = [&](std::optional<double> moment) {
        if (moment && (!latest || *moment > *latest)) {
            latest = moment;
        }
    };
    if (const auto executable = infoString(info, "CFBundleExecutable");
        executable && !executable->empty()) {
        consider(platform::accessTime(bundlePath + "/Contents/MacOS/" + *executable));
    }
    for (const RelatedItem& item : related) {
        // The test is on the long names while labels hold the short ones, so in effect no item
        // is left out; caches and logs count as use like everything else.
        if (item.label == "Library/Caches" || item.label == "Library/Logs") {
            continue;
        }
        consider(platform::modificationTime(item.path));
    }
    return latest;
}

std::optional<std::string> searchForIdentifier(const std::string& folder, std::string_view wanted,
                                               int levelsLeft) {
    const auto names = platform::directoryEntries(folder);
    if (!names) {
        return std::nullopt;
    }
    for (const std::string& name : *names) {
        const std::string path = childPath(folder, name);
        if (isBundleName(name)) {
            if (platform::bundleIdentifier(path) == wanted) {
                return path;
            }
        } else if (levelsLeft > 0 && platform::isDirectory(path)) {
            if (auto found = searchForIdentifier(path, wanted, levelsLeft - 1)) {
                return found;
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::vector<std::string> applicationRoots() {
    return {platform::systemPath("/Applications"), platform::homeDirectory() + "/Applications",
            platform::systemPath("/Applications/Utilities")};
}

std::vector<std::string> applicationPaths(const std::vector<std::string>& roots) {
    std::set<std::string> seen;
    std::vector<std::string> kept;
    for (const std::string& root : roots) {
        const auto names = platform::directoryEntries(root);
        if (!names) {
            continue;
        }
        for (const std::string& name : *names) {
            const std::string path = childPath(root, name);
            if (isBundleName(name)) {
                keepOnce(path, seen, kept);
                continue;
            }
            // "Utilities" is a root of its own; vendor folders are looked into once.
            if (name == "Utilities" || !platform::isDirectory(path)) {
                continue;
            }
            for (const std::string& inner :
                 platform::directoryEntries(path).value_or(std::vector<std::string>{})) {
                if (isBundleName(inner)) {
                    keepOnce(childPath(path, inner), seen, kept);
                }
            }
        }
    }
    return kept;
}

std::vector<std::string> applicationPaths() {
    return applicationPaths(applicationRoots());
}

std::vector<LibraryEntry> libraryEntries(const std::string& homeDirectory, bool fullDiskAccess) {
    std::vector<LibraryEntry> entries;
    for (const LibraryLocation& location : libraryLocations) {
        // Reading these without access would only bring up a prompt or an error.
        if (!fullDiskAccess && location.relativePath.find("Containers") != std::string_view::npos) {
            continue;
        }
        const std::string folder = childPath(homeDirectory, location.relativePath);
        for (const std::string& name :
             platform::directoryEntries(folder).value_or(std::vector<std::string>{})) {
            entries.push_back({childPath(folder, name), name, std::string(location.label)});
        }
    }
    return entries;
}

std::vector<LibraryEntry> libraryEntries() {
    return libraryEntries(platform::homeDirectory(), hasFullDiskAccess());
}

// The first step that holds answers yes; every comparison ignores ASCII case.
bool matches(std::string_view entryName, std::string_view bundleID, std::string_view appName) {
    const std::string entry = asciiLowerCase(entryName);
    const std::string identifier = asciiLowerCase(bundleID);
    if (!identifier.empty()) {
        if (entry == identifier) {
            return true;
        }
        for (std::string_view suffix : ownSuffixes) {
            if (entry == identifier + std::string(suffix)) {
                return true;
            }
        }
        if (entry.starts_with(identifier + ".") && entry.ends_with(".plist")) {
            return true;
        }
        // A prefixed form: ABCDE12345.com.example.writer.
        if (const size_t dot = entry.find('.');
            dot != std::string::npos && entry.substr(dot + 1) == identifier) {
            return true;
        }
    }
    // Short names such as "Go" must not claim a folder of that name.
    return appName.size() >= 4 && entry == asciiLowerCase(appName);
}

std::string bundleFileName(std::string_view bundlePath) {
    std::string name = pathName(bundlePath);
    if (const size_t dot = name.rfind('.'); dot != std::string::npos && dot > 0) {
        name.erase(dot);
    }
    return name;
}

std::string appName(std::string_view bundlePath, const std::map<std::string, std::string>& info) {
    if (auto shown = infoString(info, "CFBundleDisplayName")) {
        return *shown;
    }
    if (auto named = infoString(info, "CFBundleName")) {
        return *named;
    }
    return bundleFileName(bundlePath);
}

InstalledApp inspectBundle(const std::string& bundlePath,
                           const std::vector<LibraryEntry>& entries) {
    const auto info =
        platform::bundleInfoStrings(bundlePath).value_or(std::map<std::string, std::string>{});
    InstalledApp app;
    app.path = bundlePath;
    app.name = appName(bundlePath, info);
    if (auto identifier = infoString(info, "CFBundleIdentifier");
        identifier && !identifier->empty()) {
        app.bundleID = std::move(identifier);
    }
    app.version = infoString(info, "CFBundleShortVersionString");
    app.appSize = measureFolder(bundlePath).bytes;
    app.isApple = app.bundleID && app.bundleID->starts_with("com.apple.");
    // An Apple application's data is never attributed to it.
    if (app.bundleID && !app.isApple) {
        const std::string fileName = bundleFileName(bundlePath);
        for (const LibraryEntry& entry : entries) {
            if (matches(entry.name, *app.bundleID, fileName)) {
                app.related.push_back({entry.path, entry.label, measureFolder(entry.path).bytes});
            }
        }
        std::ranges::stable_sort(app.related, std::greater{}, &RelatedItem::size);
    }
    app.isAppStore = platform::pathExists(bundlePath + "/Contents/_MASReceipt");
    // Linux keeps no record of when an application was last opened; the files tell instead.
    if (app.bundleID) {
        app.lastUsed = lastUseFromFiles(bundlePath, info, app.related);
    }
    return app;
}

std::vector<InstalledApp> loadAll(int threads) {
    const std::vector<LibraryEntry> entries = libraryEntries();
    const std::vector<std::string> paths = applicationPaths();
    const std::vector<Flatpak::FlatpakApp> flatpaks = Flatpak::installedApps();
    std::vector<InstalledApp> apps(paths.size() + flatpaks.size());
    forEachIndexInParallel(apps.size(), threads, [&](size_t index) {
        apps[index] = index < paths.size() ? inspectBundle(paths[index], entries)
                                           : Flatpak::inspect(flatpaks[index - paths.size()]);
    });
    std::ranges::stable_sort(apps, std::greater{}, &InstalledApp::totalSize);
    return apps;
}

std::optional<std::string> applicationWithIdentifier(std::string_view bundleID) {
    for (const std::string& root : applicationRoots()) {
        if (auto found = searchForIdentifier(root, bundleID, deepestIdentifierSearch)) {
            return found;
        }
    }
    return std::nullopt;
}

} // namespace dorvik::AppInventory
