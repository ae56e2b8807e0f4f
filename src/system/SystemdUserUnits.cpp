#include "system/SystemdUserUnits.h"

#include "base/PathNames.h"
#include "platform/FileSystem.h"
#include "system/DesktopEntry.h"

namespace dorvik {

namespace {

// The unit file a ".wants" entry stands for: the link's target (relative ones from the link's
// folder), or the entry itself when it is a copy. A target outside the home folder is a system
// place, read under the system root.
std::string unitFile(const std::string& entry, const LaunchPlaces& places) {
    const auto target = platform::linkTarget(entry);
    if (!target) {
        return entry;
    }
    if (!target->starts_with('/')) {
        return parentPath(entry) + "/" + *target;
    }
    if (isAtOrUnder(*target, places.home) || isAtOrUnder(*target, places.configHome)) {
        return *target;
    }
    return places.systemRoot + *target;
}

LaunchItem unitItem(const std::string& path, const LaunchPlaces& places,
                    const DesktopApplications& applications) {
    LaunchItem item;
    item.path = path;
    item.scope = LaunchScope::systemdUser;
    item.label = pathName(path);
    // Enabled into a target that the session reaches.
    item.runAtLoad = true;
    const std::string unit = unitFile(path, places);
    if (const auto service = DesktopEntry::readGroup(unit, "Service")) {
        if (const auto exec = DesktopEntry::value(*service, "ExecStart")) {
            item.program = DesktopEntry::execProgram(*exec);
        }
        item.keepAlive = DesktopEntry::value(*service, "Restart") == "always";
    }
    if (const auto description = DesktopEntry::readGroup(unit, "Unit")) {
        item.entryName = DesktopEntry::value(*description, "Description");
    }
    if (item.program) {
        if (const DesktopApplication* owner = applications.running(*item.program)) {
            setOwner(item, *owner);
        }
    }
    item.isOrphan = isVanishedProgram(item.program);
    item.modified = platform::modificationTime(path);
    return item;
}

} // namespace

std::vector<LaunchItem> listSystemdUserUnits(const LaunchPlaces& places,
                                             const DesktopApplications& applications) {
    std::vector<LaunchItem> items;
    const std::string folder = places.folder(LaunchScope::systemdUser);
    for (const std::string& wants :
         platform::directoryEntries(folder).value_or(std::vector<std::string>{})) {
        if (!wants.ends_with(".wants")) {
            continue;
        }
        const std::string wantsFolder = folder + "/" + wants;
        for (const std::string& name :
             platform::directoryEntries(wantsFolder).value_or(std::vector<std::string>{})) {
            items.push_back(unitItem(wantsFolder + "/" + name, places, applications));
        }
    }
    return items;
}

} // namespace dorvik
