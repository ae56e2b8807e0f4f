#pragma once

// What starts by itself when the user logs in or the computer starts: the launch agents and
// daemons of the three property-list folders, then what a Linux desktop starts (the autostart
// entries of the user and of the system, the user's enabled systemd units), all in one form.
// Each item knows the application it belongs to, when there is one, and whether the program it
// starts is gone.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

enum class LaunchScope : uint8_t {
    userAgent,       // ~/Library/LaunchAgents
    systemAgent,     // /Library/LaunchAgents
    systemDaemon,    // /Library/LaunchDaemons
    autostartUser,   // $XDG_CONFIG_HOME/autostart
    autostartSystem, // /etc/xdg/autostart
    systemdUser,     // the "*.wants" folders of $XDG_CONFIG_HOME/systemd/user
};

struct LaunchScopeInfo {
    LaunchScope scope;
    std::string_view caseName;
    std::string_view sectionTitle;
    bool needsAdministrator;
};

// Every scope, in the order they are listed and shown.
std::span<const LaunchScopeInfo> launchScopes();
const LaunchScopeInfo& info(LaunchScope scope);

struct LaunchItem {
    std::string path;  // the property list, desktop entry or ".wants" link; the item's identity
    std::string label; // "Label", else the file name without its extension; a unit's full name
    std::optional<std::string> program; // what it runs: "Program", else the first argument
    LaunchScope scope = LaunchScope::userAgent;
    bool runAtLoad = false; // starts at login (autostart entries and units: is turned on)
    bool keepAlive = false; // started again whenever it stops
    std::optional<std::string> ownerName;
    std::optional<std::string> ownerPath; // the application bundle or desktop entry
    bool isOrphan = false;                // `program` is an absolute path that no longer exists
    std::optional<double> modified;       // seconds since 1970

    // Only what a Linux desktop starts has these.
    std::optional<std::string> entryName; // the entry's own "Name", shown when no owner is known
    std::optional<std::string> icon;      // an icon theme's name or an image's path, of the owner
    bool isTurnedOff = false;             // an autostart entry that the desktop will not start
    // A user autostart entry of the same name as a system one, which it stands in for: removing
    // it would bring the system one back, so it has no remove action.
    bool shadowsSystemEntry = false;

    bool operator==(const LaunchItem&) const = default;
};

// What the row calls it: the owner's name, else the entry's own name, else the label.
std::string shownName(const LaunchItem& item);

// Apple's own items are listed but never removed, nor is a user entry that stands in for a
// system one.
bool isRemovable(const LaunchItem& item);

// Whether the program is an absolute path where nothing is any more. A bare name is looked up in
// the search path when it starts: nothing to test here.
bool isVanishedProgram(const std::optional<std::string>& program);

// The owner of a launch agent: the application "program" lies in, else the application whose
// bundle identifier is the label. Fills ownerPath and ownerName.
void findBundleOwner(LaunchItem& item);

// The item a launch agent's property list describes, or none when the bytes are no property
// list with a dictionary at its top.
std::optional<LaunchItem> launchItemFromPropertyList(const std::string& path,
                                                     std::span<const uint8_t> bytes,
                                                     LaunchScope scope);

// Orphans first, then by the lower-cased shown name.
void sortLaunchItems(std::vector<LaunchItem>& items);

// Where the items are looked for. `ofThisComputer` reads the environment.
struct LaunchPlaces {
    std::string home;
    std::string configHome;
    std::string dataHome;
    std::vector<std::string> dataDirectories;
    // Prefixed to every system-wide path; "" except in tests.
    std::string systemRoot;
    // $XDG_CURRENT_DESKTOP's names, for autostart entries shown only in some desktops.
    std::vector<std::string> currentDesktops;

    static LaunchPlaces ofThisComputer();

    std::string folder(LaunchScope scope) const;
    // Where desktop entries of applications are looked for, the user's first.
    std::vector<std::string> applicationFolders() const;
};

// The launch agents of the three property-list folders (unreadable folders and files are passed
// over), sorted. Reads files: call it off the main thread.
std::vector<LaunchItem> listLaunchAgents(const LaunchPlaces& places);

// Everything of every scope, sorted.
std::vector<LaunchItem>
listLaunchItems(const LaunchPlaces& places = LaunchPlaces::ofThisComputer());

} // namespace dorvik
