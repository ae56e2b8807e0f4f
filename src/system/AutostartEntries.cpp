#include "system/AutostartEntries.h"

#include "base/PathNames.h"
#include "platform/FileSystem.h"
#include "system/DesktopEntry.h"

#include <algorithm>
#include <set>

namespace dorvik {

namespace {

std::vector<std::string> entryNames(const std::string& folder) {
    std::vector<std::string> names;
    for (std::string& name :
         platform::directoryEntries(folder).value_or(std::vector<std::string>{})) {
        if (name.ends_with(".desktop")) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

// The owner: the application with the entry's own id, else the one that runs its program.
void findOwner(LaunchItem& item, const std::string& name, const DesktopApplications& applications) {
    const DesktopApplication* owner = applications.withId(name);
    if (owner == nullptr && item.program) {
        owner = applications.running(*item.program);
    }
    if (owner != nullptr) {
        setOwner(item, *owner);
    }
}

std::optional<LaunchItem> autostartItem(const std::string& path, LaunchScope scope,
                                        const LaunchPlaces& places,
                                        const DesktopApplications& applications) {
    const auto keys = DesktopEntry::readGroup(path, "Desktop Entry");
    if (!keys) {
        return std::nullopt;
    }
    const std::string name = pathName(path);
    LaunchItem item;
    item.path = path;
    item.scope = scope;
    item.label = name.substr(0, name.size() - std::string_view(".desktop").size());
    if (const auto exec = DesktopEntry::value(*keys, "Exec")) {
        item.program = DesktopEntry::execProgram(*exec);
    }
    item.entryName = DesktopEntry::value(*keys, "Name");
    item.icon = DesktopEntry::value(*keys, "Icon");
    item.isTurnedOff = DesktopEntry::isTrue(*keys, "Hidden") ||
                       DesktopEntry::value(*keys, "X-GNOME-Autostart-enabled") == "false" ||
                       !DesktopEntry::isShownIn(*keys, places.currentDesktops);
    item.runAtLoad = !item.isTurnedOff;
    findOwner(item, name, applications);
    item.isOrphan = isVanishedProgram(item.program);
    item.modified = platform::modificationTime(path);
    return item;
}

} // namespace

std::vector<LaunchItem> listAutostartEntries(const LaunchPlaces& places,
                                             const DesktopApplications& applications) {
    std::vector<LaunchItem> items;
    const std::string userFolder = places.folder(LaunchScope::autostartUser);
    const std::string systemFolder = places.folder(LaunchScope::autostartSystem);
    const std::vector<std::string> userNames = entryNames(userFolder);
    const std::vector<std::string> systemNames = entryNames(systemFolder);
    const std::set<std::string> shadowed(systemNames.begin(), systemNames.end());
    for (const std::string& name : userNames) {
        if (auto item = autostartItem(userFolder + "/" + name, LaunchScope::autostartUser, places,
                                      applications)) {
            item->shadowsSystemEntry = shadowed.contains(name);
            items.push_back(std::move(*item));
        }
    }
    const std::set<std::string> users(userNames.begin(), userNames.end());
    for (const std::string& name : systemNames) {
        if (users.contains(name)) {
            continue;
        }
        if (auto item = autostartItem(systemFolder + "/" + name, LaunchScope::autostartSystem,
                                      places, applications)) {
            items.push_back(std::move(*item));
        }
    }
    return items;
}

std::string hidingEntryText(const std::string& name) {
    return "[Desktop Entry]\nType=Application\nName=" + name + "\nHidden=true\n";
}

} // namespace dorvik
