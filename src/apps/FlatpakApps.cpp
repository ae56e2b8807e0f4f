#include "apps/FlatpakApps.h"

#include "apps/AppInventory.h"
#include "base/KeyFile.h"
#include "base/PathNames.h"
#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/ResolvedPath.h"
#include "scanning/MeasureFolder.h"

#include <algorithm>
#include <charconv>

namespace dorvik::Flatpak {

namespace {

// Metadata files, desktop entries and metainfo are a few kilobytes; far larger is none of them.
constexpr size_t largestDescription = 1024 * 1024;

std::optional<std::string> readText(const std::string& path) {
    const auto bytes = platform::readWholeFile(path, largestDescription);
    if (!bytes) {
        return std::nullopt;
    }
    return std::string(bytes->begin(), bytes->end());
}

// The version of the first <release> element: metainfo files list the newest release first.
std::optional<std::string> newestRelease(std::string_view metainfo) {
    const size_t release = metainfo.find("<release ");
    if (release == std::string_view::npos) {
        return std::nullopt;
    }
    const size_t end = metainfo.find('>', release);
    const std::string_view element = metainfo.substr(release, end - release);
    for (const char quote : {'"', '\''}) {
        const std::string attribute = std::string(" version=") + quote;
        const size_t start = element.find(attribute);
        if (start == std::string_view::npos) {
            continue;
        }
        const size_t valueStart = start + attribute.size();
        const size_t valueEnd = element.find(quote, valueStart);
        if (valueEnd != std::string_view::npos && valueEnd > valueStart) {
            return std::string(element.substr(valueStart, valueEnd - valueStart));
        }
    }
    return std::nullopt;
}

std::optional<std::string> metainfoVersion(const std::string& deployed, const std::string& id) {
    for (const char* folder : {"/files/share/metainfo/", "/files/share/appdata/"}) {
        for (const char* suffix : {".metainfo.xml", ".appdata.xml"}) {
            if (const auto text = readText(deployed + folder + id + suffix)) {
                return newestRelease(*text);
            }
        }
    }
    return std::nullopt;
}

// The largest bitmap the app exports in the hicolor theme, else its scalable one.
std::optional<std::string> exportedIcon(const std::string& deployed, const std::string& id) {
    const std::string theme = deployed + "/export/share/icons/hicolor";
    std::optional<std::string> best;
    int bestSize = 0;
    for (const std::string& sizes :
         platform::directoryEntries(theme).value_or(std::vector<std::string>{})) {
        int size = 0;
        const auto [end, error] = std::from_chars(sizes.data(), sizes.data() + sizes.size(), size);
        const std::string candidate = theme + "/" + sizes + "/apps/" + id + ".png";
        if (error == std::errc{} && size > bestSize && platform::pathExists(candidate)) {
            best = candidate;
            bestSize = size;
        }
    }
    const std::string scalable = theme + "/scalable/apps/" + id + ".svg";
    if (!best && platform::pathExists(scalable)) {
        best = scalable;
    }
    return best;
}

// The label of a part of the sandbox's data folder.
std::string sandboxLabel(std::string_view part) {
    if (part == "cache") {
        return "Sandbox Cache";
    }
    if (part == "config") {
        return "Sandbox Config";
    }
    return "Sandbox Data";
}

std::vector<RelatedItem> relatedItems(const FlatpakApp& app) {
    std::vector<RelatedItem> items;
    const std::string data = dataFolder(app.id);
    for (const std::string& part :
         platform::directoryEntries(data).value_or(std::vector<std::string>{})) {
        const std::string path = childPath(data, part);
        items.push_back({path, sandboxLabel(part), measureFolder(path).bytes});
    }
    const std::string home = platform::homeDirectory();
    for (const DataLocation& location : dataLocations) {
        const std::string folder = childPath(home, location.relativePath);
        for (const std::string& name :
             platform::directoryEntries(folder).value_or(std::vector<std::string>{})) {
            if (AppInventory::matches(name, app.id, app.name)) {
                const std::string path = childPath(folder, name);
                items.push_back({path, std::string(location.label), measureFolder(path).bytes});
            }
        }
    }
    std::ranges::stable_sort(items, std::greater{}, &RelatedItem::size);
    return items;
}

// When the app's data last changed: its data folder and the two levels below, where the sandbox's
// own folders and the files an app writes first stand.
std::optional<double> lastDataChange(const std::string& folder, int levels) {
    std::optional<double> latest = platform::modificationTime(folder);
    if (levels == 0 || !latest) {
        return latest;
    }
    for (const std::string& name :
         platform::directoryEntries(folder).value_or(std::vector<std::string>{})) {
        const auto below = lastDataChange(childPath(folder, name), levels - 1);
        if (below && *below > *latest) {
            latest = below;
        }
    }
    return latest;
}

} // namespace

std::optional<FlatpakApp> readApp(const std::string& folder, const std::string& id,
                                  Installation installation) {
    const std::string active = folder + "/current/active";
    const auto metadata = readText(active + "/metadata");
    if (!metadata || parseKeyFile(*metadata).value("Application", "name") != id) {
        return std::nullopt;
    }
    FlatpakApp app;
    app.id = id;
    app.installation = installation;
    app.folder = folder;
    app.deployed = platform::resolvedPath(active);
    app.name = id;
    const std::string entry = active + "/export/share/applications/" + id + ".desktop";
    if (const auto text = readText(entry)) {
        if (auto name = parseKeyFile(*text).value("Desktop Entry", "Name");
            name && !name->empty()) {
            app.name = std::move(*name);
        }
    }
    app.version = metainfoVersion(app.deployed, id);
    app.icon = exportedIcon(app.deployed, id);
    return app;
}

std::vector<FlatpakApp> installedApps() {
    std::vector<FlatpakApp> apps;
    for (const Installation installation : {Installation::user, Installation::system}) {
        const std::string folder = platform::flatpakAppsFolder(installation);
        for (const std::string& id :
             platform::directoryEntries(folder).value_or(std::vector<std::string>{})) {
            if (auto app = readApp(childPath(folder, id), id, installation)) {
                apps.push_back(std::move(*app));
            }
        }
    }
    return apps;
}

std::string dataFolder(std::string_view id) {
    return platform::homeDirectory() + "/.var/app/" + std::string(id);
}

InstalledApp inspect(const FlatpakApp& app) {
    InstalledApp installed;
    installed.path = app.folder;
    installed.name = app.name;
    installed.bundleID = app.id;
    installed.version = app.version;
    installed.appSize = measureFolder(app.deployed).bytes;
    installed.related = relatedItems(app);
    installed.lastUsed = lastDataChange(dataFolder(app.id), 2);
    return installed;
}

} // namespace dorvik::Flatpak
