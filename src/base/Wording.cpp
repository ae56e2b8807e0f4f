#include "base/Wording.h"

#include <array>
#include <unordered_map>

namespace dorvik::Wording {

namespace {

// The keys that name a Mac, in the order of the places that show them, with what a Linux desktop
// calls the same thing: the file manager for the Finder, this computer for the Mac, the system
// for macOS, the filesystem's own words for APFS. A key the table leaves out is shown as it is.
constexpr std::array<Rendering, 74> table = {{
    // The disk in the sidebar's foot, when its filesystem has no label: what the file managers of
    // Linux desktops call the root filesystem.
    {"Macintosh HD", "File System"},

    // File lists, the map and the breadcrumbs.
    {"Show in Finder", "Show in File Manager"},

    // Pages' headers and invitations.
    {"Browse folder by folder sorted by size, like a Finder that shows what everything really "
     "takes up.",
     "Browse folder by folder sorted by size, like a file manager that shows what everything "
     "really takes up."},
    {"Dorvik measures your whole disk (real size on APFS, without counting hard links twice) and "
     "breaks it down by category, folder and file type.",
     "Dorvik measures your whole disk (the real size on disk, without counting hard links twice) "
     "and breaks it down by category, folder and file type."},
    {"What macOS lumps together as \u201cSystem Data\u201d in Storage settings, explained piece by "
     "piece.",
     "What the system keeps for itself beside your files, explained piece by piece."},
    {"Files iCloud keeps downloaded on this Mac. Remove the download and they stay in iCloud, "
     "ready to download again when you open them.",
     "Files iCloud keeps downloaded on this computer. Remove the download and they stay in "
     "iCloud, ready to download again when you open them."},
    {"Data in ~/Library from apps that are no longer installed on this Mac.",
     "Data in your home folder from apps that are no longer installed on this computer."},
    {"Background agents and daemons that start with your Mac. Removing one stops it from "
     "launching; the app itself stays installed.",
     "Background agents and services that start with your computer. Removing one stops it from "
     "launching; the app itself stays installed."},
    {"Dependencies and build artifacts that can be regenerated: node_modules, virtual "
     "environments, DerivedData, package caches.",
     "Dependencies and build artifacts that can be regenerated: node_modules, virtual "
     "environments, build outputs, package caches."},
    {"System follows your Mac: with macOS set to Auto, Dorvik is light by day and dark at night.",
     "System follows your desktop: when its style turns light or dark, so does Dorvik."},

    // The categories.
    {".app bundles in Applications and other folders.",
     "Applications installed in /opt, as Flatpaks or as Snaps, and app bundles."},
    {"DMG, PKG, ZIP\u2026 usually safe to delete after installing.",
     "ISO, ZIP, TAR\u2026 usually safe to delete after unpacking or installing."},
    {"Xcode, simulators, node_modules, Docker and package caches.",
     "node_modules, virtual environments, toolchains, Docker and package caches."},
    {"What apps store in ~/Library: databases, settings, containers.",
     "What apps store in ~/.config, ~/.local/share and ~/.var/app: databases, settings, "
     "containers."},
    {"Caches, logs and temporary files. macOS and apps recreate them.",
     "Caches and temporary files. The system and apps recreate them."},
    {"macOS files and shared components outside the sealed volume.",
     "The operating system: its programs, libraries, settings and the state of its packages."},

    // The safety rules' reasons.
    {"Part of macOS, protected by System Integrity Protection (SIP).",
     "Part of the operating system."},
    {"Core macOS tools.", "Core system tools."},
    {"macOS tools.", "System tools."},
    {"macOS libraries.", "System libraries."},
    {"macOS components.", "System components."},
    {"macOS data.", "System data."},
    {"Virtual memory and sleep image. macOS manages them on its own.",
     "Virtual memory and sleep image. The system manages them on its own."},
    {"Kernel extensions. Deleting them can stop your Mac from starting up.",
     "Kernel extensions. Deleting them can stop the computer from starting up."},
    {"Spotlight index. To rebuild it, use System Settings > Spotlight.",
     "Search index. The system rebuilds it on its own."},
    {"Document versions managed by macOS.", "Document versions managed by the system."},
    {"macOS updates in progress.", "System updates in progress."},
    {"Accounts set up on this Mac.", "Accounts set up on this computer."},
    {"Folder used by macOS. Dorvik empties its contents but keeps the folder.",
     "Folder used by the system. Dorvik empties its contents but keeps the folder."},
    {"macOS app.", "System app."},
    {"Apple app included with macOS or required by the system.",
     "App included with the system or required by it."},

    // The junk rules.
    {"iOS/iPadOS installers downloaded by Finder. Downloaded again if needed.",
     "iOS/iPadOS installers downloaded for your devices. Downloaded again if needed."},

    // Failures of a removal.
    {"No permission. It may need Full Disk Access, or it belongs to another user.",
     "No permission. It belongs to another user or needs an administrator."},
    {"No permission to read. Grant Full Disk Access.",
     "No permission to read. It belongs to another user or to the system."},

    // Quick Clean.
    {". Dorvik only looks for files that macOS and your apps can recreate.",
     ". Dorvik only looks for files that the system and your apps can recreate."},
    {"Everything stays on your Mac", "Everything stays on this computer"},
    {"Your Mac is clean. No junk found.", "Your computer is clean. No junk found."},
    {"Dorvik only reads names and sizes. Nothing leaves your Mac.",
     "Dorvik only reads names and sizes. Nothing leaves this computer."},

    // The Overview.
    {"macOS and other", "System and other"},
    {"Sealed system volume, local snapshots and folders without access.",
     "Space the filesystem keeps for itself and folders without access."},
    {"macOS frees this on its own when needed (iCloud copies, caches)",
     "The system frees this on its own when needed"},

    // Duplicates and space sharing.
    {"Keeps every file where it is and stores identical ones only once (APFS clones). Editing one "
     "later doesn\u2019t change the other.",
     "Keeps every file where it is and stores identical ones only once (shared blocks). Editing "
     "one later doesn\u2019t change the other."},
    {"macOS stores them only once, so there is nothing to reclaim.",
     "The filesystem stores them only once, so there is nothing to reclaim."},
    {"This disk doesn't support shared copies (it isn't APFS).",
     "This disk doesn't support shared copies (its filesystem can't share blocks)."},

    // iCloud Drive.
    {"iCloud Drive isn\u2019t in use on this Mac",
     "iCloud Drive isn\u2019t in use on this computer"},
    {"Turn it on in System Settings \u203a Apple Account \u203a iCloud to see it here.",
     "iCloud Drive isn\u2019t available on this computer, so there is nothing to show here."},
    {"iCloud Drive is using very little space on this Mac.",
     "iCloud Drive is using very little space on this computer."},
    {"Takes no space on this Mac", "Takes no space on this computer"},
    {"On this Mac", "On this computer"},
    {" file(s) couldn't be removed from this Mac. Details in History.",
     " file(s) couldn't be removed from this computer. Details in History."},

    // Applications and their leftovers.
    {"Comparing ~/Library with your installed apps\u2026",
     "Comparing your apps\u2019 data with your installed apps\u2026"},
    {"Open Dorvik to review and remove what it left on your Mac.",
     "Open Dorvik to review and remove what it left on this computer."},

    // Virtual disks.
    {"Deleting files inside the virtual machine doesn\u2019t give the space back to your Mac. "
     "Compact the disk from the app that owns it, or delete the machine there if you no longer "
     "use it.",
     "Deleting files inside the virtual machine doesn\u2019t give the space back to this "
     "computer. Compact the disk from the app that owns it, or delete the machine there if you "
     "no longer use it."},

    // Snapshots and System Data.
    {"Time Machine local snapshots", "Local snapshots"},
    {"Time Machine copies kept on this disk.", "Snapshots kept on this disk."},
    {"macOS keeps hourly snapshots on your disk while your backup drive is away and removes them "
     "automatically when space is needed or after 24 hours. Deleting one by hand frees its space "
     "right away; your backups on the external drive are not affected.",
     "The system keeps snapshots of your disk and removes the old ones on its own. Deleting one "
     "by hand frees the space only it holds; your backups elsewhere are not affected."},
    {"macOS frees this on its own when space runs low.",
     "The system frees this on its own when space runs low."},
    {"macOS rotates them automatically.", "The system rotates them automatically."},
    {"macOS update downloads", "System update downloads"},
    {"Installers for pending macOS updates.", "Installers for pending system updates."},
    {"Install or cancel the pending update in System Settings \u203a General \u203a Software "
     "Update.",
     "Install or cancel the pending update with the system\u2019s software updater."},
    {"Apple Intelligence models, voices, dictionaries, fonts and other components macOS "
     "downloads on demand.",
     "Voices, dictionaries, fonts and other components the system downloads on demand."},
    {"Disable features you don't use (Apple Intelligence, extra voices) in System Settings to "
     "reclaim space.",
     "Remove the system components you don't use to reclaim space."},
    {"Spotlight index", "Search index"},
    {"Rebuild it from System Settings \u203a Spotlight if it seems too large.",
     "The system rebuilds it on its own if it is removed."},
    {"Per-app temporary files and caches kept by macOS.",
     "Per-app temporary files and caches kept by the system."},
    {"Diagnostic logs written by macOS.", "Diagnostic logs written by the system."},
    {"Managed by macOS. Restarting the Mac usually shrinks it.",
     "Managed by the system. Restarting the computer usually shrinks it."},
    {"Usually safe to let macOS manage. Dorvik's Junk view covers your own caches.",
     "Usually safe to let the system manage. Dorvik's Junk view covers your own caches."},
    {"Protected by macOS or in use.", "Protected by the system or in use."},

    // The menu bar's warning.
    {"Your Mac is running out of space", "Your computer is running out of space"},

    // The settings window: Linux has no access to grant, and a tray where a Mac has a menu bar.
    {"Full Disk Access", "Access to all files"},
    {"Show free space in the menu bar", "Show free space in the system tray"},
    {"Only caches, logs, saved window state and Xcode build data \u2014 files that regenerate on "
     "their own. Never the Trash, Downloads or anything marked Review. Runs while Dorvik is open "
     "or in the menu bar.",
     "Only caches, logs, saved window state and Xcode build data \u2014 files that regenerate on "
     "their own. Never the Trash, Downloads or anything marked Review. Runs while Dorvik is open "
     "or in the system tray."},
}};

} // namespace

std::span<const Rendering> renderings() {
    return table;
}

std::optional<std::string_view> rendering(std::string_view key) {
    static const auto byKey = [] {
        std::unordered_map<std::string_view, std::string_view> map;
        for (const Rendering& row : table) {
            map.emplace(row.key, row.shown);
        }
        return map;
    }();
    const auto found = byKey.find(key);
    if (found == byKey.end()) {
        return std::nullopt;
    }
    return found->second;
}

std::string shown(std::string_view key) {
    return std::string(rendering(key).value_or(key));
}

} // namespace dorvik::Wording
