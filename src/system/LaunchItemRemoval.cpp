#include "system/LaunchItemRemoval.h"

#include "base/PathNames.h"
#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/Privileged.h"
#include "system/AutostartEntries.h"

#include <array>
#include <cerrno>

namespace dorvik {

namespace {

// The kinds of unit that `systemctl enable` links into a ".wants" folder.
constexpr std::array<std::string_view, 6> unitTypes = {".service", ".socket", ".timer",
                                                       ".path",    ".target", ".mount"};

bool hasAcceptedExtension(const std::string& path, LaunchScope scope) {
    switch (scope) {
    case LaunchScope::userAgent:
    case LaunchScope::systemAgent:
    case LaunchScope::systemDaemon:
        return path.ends_with(".plist");
    case LaunchScope::autostartUser:
    case LaunchScope::autostartSystem:
        return path.ends_with(".desktop");
    case LaunchScope::systemdUser:
        for (std::string_view type : unitTypes) {
            if (path.ends_with(type)) {
                return true;
            }
        }
        return false;
    }
    return false;
}

bool isAcceptedCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("._@+/ -").find(c) != std::string_view::npos;
}

std::string userTarget(unsigned userId) {
    return "gui/" + std::to_string(userId);
}

std::optional<std::string> turnOffSystemEntry(const LaunchItem& item, const LaunchPlaces& places) {
    const std::string folder = places.folder(LaunchScope::autostartUser);
    if (platform::createFolders(folder)) {
        return std::string(couldNotRemoveMessage);
    }
    const int error = platform::writeNewFile(folder + "/" + pathName(item.path),
                                             hidingEntryText(shownName(item)), 0644);
    if (error != 0) {
        return std::string(couldNotRemoveMessage);
    }
    return std::nullopt;
}

} // namespace

bool isAcceptedLaunchItemPath(const std::string& path, LaunchScope scope) {
    for (char c : path) {
        if (!isAcceptedCharacter(c)) {
            return false;
        }
    }
    return path.find("..") == std::string::npos && hasAcceptedExtension(path, scope);
}

std::string privilegedRemovalLine(const LaunchItem& item, unsigned userId,
                                  const std::string& home) {
    const std::string target =
        item.scope == LaunchScope::systemDaemon ? std::string("system") : userTarget(userId);
    return "/bin/launchctl bootout " + target + " '" + item.path + "'; /bin/mv '" + item.path +
           "' '" + home + "/.Trash/'";
}

LaunchRemoval removeLaunchItem(const LaunchItem& item, const LaunchPlaces& places,
                               const platform::ProcessRunner& run, const LaunchTools& tools) {
    if (!isAcceptedLaunchItemPath(item.path, item.scope)) {
        return {std::string(unsupportedFileNameMessage), std::nullopt};
    }
    switch (item.scope) {
    case LaunchScope::userAgent:
        // An agent that isn't loaded can still go: the unload's outcome is not looked at.
        if (platform::isExecutable(tools.launchctl)) {
            run({tools.launchctl, "bootout", userTarget(platform::currentUserId()), item.path});
        }
        return {std::nullopt, item.path};
    case LaunchScope::systemAgent:
    case LaunchScope::systemDaemon:
        return {platform::runPrivileged(
                    privilegedRemovalLine(item, platform::currentUserId(), places.home),
                    couldNotRemoveMessage, run),
                std::nullopt};
    case LaunchScope::autostartUser:
        return {std::nullopt, item.path};
    case LaunchScope::autostartSystem:
        return {turnOffSystemEntry(item, places), std::nullopt};
    case LaunchScope::systemdUser: {
        const platform::ToolRun disabled =
            run({tools.systemctl, "--user", "disable", pathName(item.path)});
        if (disabled.launched && disabled.exitStatus == 0) {
            return {};
        }
        return {std::nullopt, item.path};
    }
    }
    return {std::string(couldNotRemoveMessage), std::nullopt};
}

} // namespace dorvik
