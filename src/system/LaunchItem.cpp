#include "system/LaunchItem.h"

#include "apps/AppInventory.h"
#include "base/PathNames.h"
#include "platform/Bundle.h"
#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/PropertyList.h"
#include "platform/SystemRoot.h"
#include "system/AutostartEntries.h"
#include "system/DesktopApplications.h"
#include "system/SystemdUserUnits.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>

namespace dorvik {

namespace {

constexpr std::array<LaunchScopeInfo, 6> scopes = {{
    {LaunchScope::userAgent, "userAgent", "Your login agents", false},
    {LaunchScope::systemAgent, "systemAgent", "Agents for all users", true},
    {LaunchScope::systemDaemon, "systemDaemon", "System daemons", true},
    {LaunchScope::autostartUser, "autostartUser", "Your autostart entries", false},
    {LaunchScope::autostartSystem, "autostartSystem", "Autostart entries for all users", false},
    {LaunchScope::systemdUser, "systemdUser", "Your background services", false},
}};

// Launch agents are a few kilobytes; anything far larger is not one.
constexpr size_t largestLaunchAgent = 4 * 1024 * 1024;

std::string withoutExtension(const std::string& name) {
    const size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

std::vector<std::string> splitDesktops(const char* value) {
    std::vector<std::string> names;
    const std::string_view list = value != nullptr ? value : "";
    size_t start = 0;
    while (start < list.size()) {
        const size_t end = std::min(list.find(':', start), list.size());
        if (end > start) {
            names.emplace_back(list.substr(start, end - start));
        }
        start = end + 1;
    }
    return names;
}

} // namespace

std::span<const LaunchScopeInfo> launchScopes() {
    return scopes;
}

const LaunchScopeInfo& info(LaunchScope scope) {
    return scopes[static_cast<size_t>(scope)];
}

std::string shownName(const LaunchItem& item) {
    return item.ownerName.value_or(item.entryName.value_or(item.label));
}

bool isRemovable(const LaunchItem& item) {
    return !item.label.starts_with("com.apple.") && !item.shadowsSystemEntry;
}

bool isVanishedProgram(const std::optional<std::string>& program) {
    return program && program->starts_with('/') && !platform::pathExists(*program);
}

void findBundleOwner(LaunchItem& item) {
    if (item.program) {
        if (const size_t app = item.program->find(".app/"); app != std::string::npos) {
            item.ownerPath = item.program->substr(0, app) + ".app";
        }
    }
    if (!item.ownerPath) {
        // Helpers outside an application often bear its identifier as their label.
        item.ownerPath = AppInventory::applicationWithIdentifier(item.label);
    }
    if (item.ownerPath) {
        item.ownerName = withoutExtension(pathName(*item.ownerPath));
    }
}

std::optional<LaunchItem> launchItemFromPropertyList(const std::string& path,
                                                     std::span<const uint8_t> bytes,
                                                     LaunchScope scope) {
    const auto entries = platform::propertyListDictionary(bytes);
    if (!entries) {
        return std::nullopt;
    }
    using Kind = platform::PropertyListValue::Kind;
    const auto entry = [&entries](const char* key) -> const platform::PropertyListValue* {
        const auto found = entries->find(key);
        return found == entries->end() ? nullptr : &found->second;
    };
    LaunchItem item;
    item.path = path;
    item.scope = scope;
    const auto* label = entry("Label");
    item.label = label != nullptr && label->kind == Kind::string ? label->text
                                                                 : withoutExtension(pathName(path));
    if (const auto* program = entry("Program");
        program != nullptr && program->kind == Kind::string) {
        item.program = program->text;
    } else if (const auto* arguments = entry("ProgramArguments"); arguments != nullptr &&
                                                                  arguments->kind == Kind::array &&
                                                                  !arguments->elements.empty()) {
        item.program = arguments->elements.front();
    }
    const auto* runAtLoad = entry("RunAtLoad");
    item.runAtLoad = runAtLoad != nullptr && runAtLoad->kind == Kind::boolean && runAtLoad->flag;
    if (const auto* keepAlive = entry("KeepAlive"); keepAlive != nullptr) {
        // A dictionary holds the conditions under which it is kept alive: it is, some of the time.
        item.keepAlive = keepAlive->kind == Kind::dictionary ||
                         (keepAlive->kind == Kind::boolean && keepAlive->flag);
    }
    findBundleOwner(item);
    // A bare program name is looked up in the search path at launch: nothing to test here.
    item.isOrphan = isVanishedProgram(item.program);
    item.modified = platform::modificationTime(path);
    return item;
}

void sortLaunchItems(std::vector<LaunchItem>& items) {
    std::ranges::stable_sort(items, [](const LaunchItem& left, const LaunchItem& right) {
        if (left.isOrphan != right.isOrphan) {
            return left.isOrphan;
        }
        return asciiLowerCase(shownName(left)) < asciiLowerCase(shownName(right));
    });
}

LaunchPlaces LaunchPlaces::ofThisComputer() {
    LaunchPlaces places;
    places.home = platform::homeDirectory();
    places.configHome = platform::configHomeDirectory();
    places.dataHome = platform::dataHomeDirectory();
    places.systemRoot = platform::systemRoot();
    for (const std::string& folder : platform::dataDirectories()) {
        places.dataDirectories.push_back(places.systemRoot + folder);
    }
    places.currentDesktops = splitDesktops(std::getenv("XDG_CURRENT_DESKTOP"));
    return places;
}

std::string LaunchPlaces::folder(LaunchScope scope) const {
    switch (scope) {
    case LaunchScope::userAgent:
        return home + "/Library/LaunchAgents";
    case LaunchScope::systemAgent:
        return systemRoot + "/Library/LaunchAgents";
    case LaunchScope::systemDaemon:
        return systemRoot + "/Library/LaunchDaemons";
    case LaunchScope::autostartUser:
        return configHome + "/autostart";
    case LaunchScope::autostartSystem:
        return systemRoot + "/etc/xdg/autostart";
    case LaunchScope::systemdUser:
        return configHome + "/systemd/user";
    }
    return {};
}

std::vector<std::string> LaunchPlaces::applicationFolders() const {
    std::vector<std::string> folders = {dataHome + "/applications"};
    for (const std::string& folder : dataDirectories) {
        folders.push_back(folder + "/applications");
    }
    return folders;
}

std::vector<LaunchItem> listLaunchAgents(const LaunchPlaces& places) {
    std::vector<LaunchItem> items;
    for (LaunchScope scope :
         {LaunchScope::userAgent, LaunchScope::systemAgent, LaunchScope::systemDaemon}) {
        const std::string folder = places.folder(scope);
        for (const std::string& name :
             platform::directoryEntries(folder).value_or(std::vector<std::string>{})) {
            if (!name.ends_with(".plist")) {
                continue;
            }
            const std::string path = folder + "/" + name;
            const auto bytes = platform::readWholeFile(path, largestLaunchAgent);
            if (!bytes) {
                continue;
            }
            if (auto item = launchItemFromPropertyList(path, *bytes, scope)) {
                items.push_back(std::move(*item));
            }
        }
    }
    sortLaunchItems(items);
    return items;
}

std::vector<LaunchItem> listLaunchItems(const LaunchPlaces& places) {
    std::vector<LaunchItem> items = listLaunchAgents(places);
    const DesktopApplications applications = DesktopApplications::read(places.applicationFolders());
    std::ranges::move(listAutostartEntries(places, applications), std::back_inserter(items));
    std::ranges::move(listSystemdUserUnits(places, applications), std::back_inserter(items));
    sortLaunchItems(items);
    return items;
}

} // namespace dorvik
