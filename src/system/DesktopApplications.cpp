#include "system/DesktopApplications.h"

#include "base/PathNames.h"
#include "platform/FileSystem.h"
#include "system/DesktopEntry.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace dorvik {

namespace {

// Programs that run something else named in their arguments: many applications share each one,
// so it names none of them.
constexpr std::array<std::string_view, 12> launchers = {
    "sh",     "bash",    "dash", "zsh", "flatpak", "snap",
    "python", "python3", "perl", "gjs", "java",    "gio",
};

bool isLauncher(const std::string& program) {
    return std::ranges::find(launchers, pathName(program)) != launchers.end();
}

} // namespace

void setOwner(LaunchItem& item, const DesktopApplication& owner) {
    item.ownerName = owner.name;
    item.ownerPath = owner.path;
    if (owner.icon) {
        item.icon = owner.icon;
    }
}

DesktopApplications DesktopApplications::read(const std::vector<std::string>& folders) {
    std::vector<DesktopApplication> applications;
    std::set<std::string> seen;
    for (const std::string& folder : folders) {
        for (const std::string& name :
             platform::directoryEntries(folder).value_or(std::vector<std::string>{})) {
            if (!name.ends_with(".desktop") || !seen.insert(name).second) {
                continue;
            }
            const std::string path = folder + "/" + name;
            const auto keys = DesktopEntry::readGroup(path, "Desktop Entry");
            if (!keys || DesktopEntry::value(*keys, "Type").value_or("") != "Application") {
                continue;
            }
            const auto exec = DesktopEntry::value(*keys, "Exec");
            applications.push_back({
                name,
                path,
                DesktopEntry::value(*keys, "Name").value_or(name.substr(0, name.size() - 8)),
                DesktopEntry::value(*keys, "Icon"),
                exec ? DesktopEntry::execProgram(*exec) : std::nullopt,
            });
        }
    }
    return DesktopApplications(std::move(applications));
}

const DesktopApplication* DesktopApplications::withId(const std::string& id) const {
    const auto found = std::ranges::find(applications_, id, &DesktopApplication::id);
    return found == applications_.end() ? nullptr : &*found;
}

const DesktopApplication* DesktopApplications::running(const std::string& program) const {
    if (isLauncher(program)) {
        return nullptr;
    }
    const bool bare = !program.starts_with('/');
    const auto found = std::ranges::find_if(applications_, [&](const DesktopApplication& app) {
        if (!app.program) {
            return false;
        }
        if (bare || !app.program->starts_with('/')) {
            return pathName(*app.program) == pathName(program);
        }
        return *app.program == program;
    });
    return found == applications_.end() ? nullptr : &*found;
}

} // namespace dorvik
