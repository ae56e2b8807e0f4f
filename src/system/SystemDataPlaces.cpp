#include "system/SystemDataPlaces.h"

#include <array>

namespace dorvik {

namespace {

constexpr Risk protected_ = Risk::protected_;
constexpr Risk review = Risk::review;

constexpr size_t macCount = 8;
constexpr size_t linuxCount = 17;

// Both tables in one array, so that the whole list is one span.
constexpr std::array<SystemDataPlace, macCount + linuxCount> places = {{
    {"vm", "/private/var/vm", "Swap and sleep image",
     "Virtual memory macOS writes to disk when RAM is full, plus the hibernation image.",
     "Managed by macOS. Restarting the Mac usually shrinks it.", protected_, "memorychip"},
    {"tmp", "/private/var/folders", "Temporary files",
     "Per-app temporary files and caches kept by macOS.",
     "Cleared automatically on restart. Don't delete by hand while apps are running.", protected_,
     "clock.arrow.circlepath"},
    {"assets", "/System/Library/AssetsV2", "Downloaded system assets",
     "Apple Intelligence models, voices, dictionaries, fonts and other components macOS "
     "downloads on demand.",
     "Disable features you don't use (Apple Intelligence, extra voices) in System Settings to "
     "reclaim space.",
     protected_, "brain"},
    {"updates", "/Library/Updates", "macOS update downloads",
     "Installers for pending macOS updates.",
     "Install or cancel the pending update in System Settings \u203a General \u203a Software "
     "Update.",
     review, "arrow.down.circle"},
    {"simulators", "/Library/Developer/CoreSimulator", "iOS Simulator runtimes",
     "Simulator runtimes installed by Xcode (several GB each).",
     "Remove unused runtimes in Xcode \u203a Settings \u203a Components.", review, "iphone"},
    {"spotlight", "/.Spotlight-V100", "Spotlight index", "The search index for this disk.",
     "Rebuild it from System Settings \u203a Spotlight if it seems too large.", protected_,
     "magnifyingglass"},
    {"caches", "/Library/Caches", "Shared caches",
     "Caches shared by all users and system services.",
     "Usually safe to let macOS manage. Dorvik's Junk view covers your own caches.", review,
     "shippingbox"},
    {"logs", "/private/var/log", "System logs", "Diagnostic logs written by macOS.",
     "macOS rotates them automatically.", protected_, "doc.text"},

    // Linux. A place inside another (the journal in /var/log, apt's cache in /var/cache) is
    // counted in its own row and taken out of the other's.
    {"swapfile", "/swapfile", "Swap file",
     "Space the system sets aside to move memory to disk when RAM is full.",
     "To change its size: `sudo swapoff /swapfile`, make the file again at the new size with "
     "`sudo fallocate -l 4G /swapfile` and `sudo mkswap /swapfile`, then `sudo swapon "
     "/swapfile`.",
     protected_, "memorychip"},
    {"swapimage", "/swap.img", "Swap file",
     "Space the system sets aside to move memory to disk when RAM is full.",
     "To change its size: `sudo swapoff /swap.img`, make the file again at the new size with "
     "`sudo fallocate -l 4G /swap.img` and `sudo mkswap /swap.img`, then `sudo swapon "
     "/swap.img`.",
     protected_, "memorychip"},
    {"journal", "/var/log/journal", "System journal",
     "The systemd journal: what every service and the kernel logged, kept across restarts.",
     "`sudo journalctl --vacuum-size=500M` keeps only the newest 500 MB; SystemMaxUse= in "
     "/etc/systemd/journald.conf keeps it there.",
     protected_, "doc.text"},
    {"logs.linux", "/var/log", "Other system logs",
     "Logs that services write beside the journal, with their older, rotated copies.",
     "logrotate rotates and compresses them on its own; `sudo logrotate --force "
     "/etc/logrotate.conf` does it now.",
     protected_, "doc.text"},
    {"apt", "/var/cache/apt", "Downloaded packages (apt)",
     "Packages apt downloaded to install or update software, and its package lists.",
     "`sudo apt-get clean` deletes the downloaded packages; apt downloads them again when it "
     "needs them.",
     review, "shippingbox"},
    {"dnf", "/var/cache/dnf", "Downloaded packages (dnf)",
     "Packages and metadata dnf downloaded to install or update software.",
     "`sudo dnf clean packages` deletes the downloaded packages.", review, "shippingbox"},
    {"pacman", "/var/cache/pacman/pkg", "Downloaded packages (pacman)",
     "Every version of every package pacman installed, kept so that one can go back.",
     "`sudo paccache -r` keeps the three newest versions of each package (paccache comes with "
     "pacman-contrib).",
     review, "shippingbox"},
    {"caches.linux", "/var/cache", "Other system caches",
     "Caches kept by system services: fonts, manual pages, package indexes.",
     "The services fill them again when needed; leave them to the system.", review, "shippingbox"},
    {"flatpak", "/var/lib/flatpak", "Flatpak applications and runtimes",
     "Applications installed with Flatpak for every user, and the runtimes they run on.",
     "`flatpak uninstall --unused` removes the runtimes that no application uses any more.",
     protected_, "app.badge.fill"},
    {"snaps", "/var/lib/snapd/snaps", "Snap revisions",
     "Every installed snap, with the older revisions snapd keeps to go back to.",
     "`snap list --all` shows the disabled revisions and `sudo snap remove NAME --revision=N` "
     "deletes one; `sudo snap set system refresh.retain=2` keeps fewer from now on.",
     protected_, "square.stack.3d.up.fill"},
    {"docker", "/var/lib/docker", "Docker images and containers",
     "Images, containers, volumes and the build cache of Docker.",
     "`docker system prune` removes stopped containers, unused networks, dangling images and "
     "the build cache; `docker system prune --all` also every image no container uses.",
     protected_, "hammer.fill"},
    {"containers", "/var/lib/containers", "Podman images and containers",
     "Images and containers of Podman and the tools that share its storage.",
     "`sudo podman system prune` removes stopped containers and dangling images; add `--all` "
     "for every image no container uses.",
     protected_, "hammer.fill"},
    {"crash", "/var/crash", "Crash reports",
     "Reports written when a program crashed, often with a copy of its memory.",
     "Delete the reports you no longer need: `sudo rm /var/crash/*.crash`.", review,
     "exclamationmark.triangle.fill"},
    {"coredump", "/var/lib/systemd/coredump", "Core dumps",
     "The memory of crashed programs, kept by systemd-coredump for debugging.",
     "`coredumpctl list` shows them; systemd deletes old ones on its own, and `sudo "
     "systemd-tmpfiles --clean` applies its age limit now.",
     protected_, "exclamationmark.triangle.fill"},
    {"vartmp", "/var/tmp", "Temporary files kept across restarts",
     "Temporary files that programs keep after a restart.",
     "`sudo systemd-tmpfiles --clean` deletes those unused for 30 days, as the system does "
     "every day.",
     review, "clock.arrow.circlepath"},
    {"tmp.linux", "/tmp", "Temporary files",
     "Temporary files of every program and user. On many systems they lie in memory, not on the "
     "disk.",
     "Cleared on restart on most systems; `sudo systemd-tmpfiles --clean` deletes those unused "
     "for 10 days. Don't delete by hand while programs are running.",
     protected_, "clock.arrow.circlepath"},
    {"boot", "/boot", "Kernels and boot loader",
     "The kernels the computer can start, with their initial RAM disks.",
     "`sudo apt autoremove --purge` removes the kernels older than the running one and the one "
     "before it.",
     protected_, "gearshape.fill"},
}};

} // namespace

std::span<const SystemDataPlace> macSystemDataPlaces() {
    return std::span(places).first(macCount);
}

std::span<const SystemDataPlace> linuxSystemDataPlaces() {
    return std::span(places).subspan(macCount);
}

std::span<const SystemDataPlace> systemDataPlaces() {
    return places;
}

} // namespace dorvik
