#include "removal/SafetyRules.h"

#include "base/PathNames.h"
#include "catalogue/JunkCatalogue.h"
#include "platform/Bundle.h"
#include "platform/FlatpakPlaces.h"
#include "platform/HomeDirectory.h"
#include "platform/ResolvedPath.h"
#include "platform/RunningApplications.h"
#include "removal/ProtectedPlaces.h"

#include <algorithm>
#include <array>

namespace dorvik::SafetyRules {

namespace {

constexpr std::array<ProtectedPath, 23> systemPaths = {{
    {"/System", "Part of macOS, protected by System Integrity Protection (SIP)."},
    {"/bin", "Core macOS tools."},
    {"/sbin", "Core macOS tools."},
    {"/usr/bin", "macOS tools."},
    {"/usr/lib", "macOS libraries."},
    {"/usr/libexec", "macOS components."},
    {"/usr/sbin", "macOS tools."},
    {"/usr/share", "macOS data."},
    {"/private/var/db", "System databases (security, updates, users)."},
    {"/private/var/vm", "Virtual memory and sleep image. macOS manages them on its own."},
    {"/private/var/protected", "Protected system data."},
    {"/private/etc", "System configuration."},
    {"/Library/Apple", "Apple components."},
    {"/Library/Keychains", "System keychains: passwords and certificates."},
    {"/Library/Security", "Security components."},
    {"/Library/Extensions", "Kernel extensions. Deleting them can stop your Mac from starting up."},
    {"/Library/SystemExtensions", "System extensions in use."},
    {"/Library/Preferences/SystemConfiguration", "Network and system configuration."},
    {"/Library/Application Support/com.apple.TCC", "Privacy and permissions database."},
    {"/.Spotlight-V100", "Spotlight index. To rebuild it, use System Settings > Spotlight."},
    {"/.fseventsd", "File system change log."},
    {"/.DocumentRevisions-V100", "Document versions managed by macOS."},
    {"/MobileSoftwareUpdate", "macOS updates in progress."},
}};

// Where a Linux system keeps itself. The table above names the Mac's places; on Linux these are
// their like, and the program must not be the tool that deletes them either.
constexpr std::array<ProtectedPath, 18> linuxSystemPaths = {{
    {"/etc", "System configuration."},
    {"/boot", "Kernel and boot loader. Deleting them can stop the computer from starting up."},
    {"/dev", "Live state of the running system."},
    {"/proc", "Live state of the running system."},
    {"/sys", "Live state of the running system."},
    {"/run", "Live state of the running system."},
    {"/lib", "System libraries."},
    {"/lib32", "System libraries."},
    {"/lib64", "System libraries."},
    {"/libx32", "System libraries."},
    {"/usr/lib32", "System libraries."},
    {"/usr/lib64", "System libraries."},
    {"/usr/include", "System headers."},
    {"/var/lib", "Data of the system's packages and services."},
    {"/var/spool", "Queued system work: mail, printing and scheduled jobs."},
    {"/var/log", "System logs."},
    {"/snap", "Installed snap packages. Remove them with snap."},
    {"/lost+found", "Pieces recovered by a file system check."},
}};

constexpr std::array<ProtectedPath, 13> homePaths = {{
    {"Library/Keychains", "Your keychains: passwords, keys and certificates."},
    {"Library/Mail", "Your Mail mailboxes. Manage your email from the Mail app."},
    {"Library/Messages", "Your Messages history."},
    {"Library/Accounts", "Accounts set up on this Mac."},
    {"Library/Cookies", "Browser sessions."},
    {"Library/Group Containers/group.com.apple", "Data shared by Apple apps."},
    {"Library/Containers/com.apple", "Apple app data."},
    {"Library/Application Support/AddressBook", "Your contacts."},
    {"Library/Calendars", "Your calendars."},
    {"Library/Safari", "Safari history, bookmarks and tabs."},
    {"Library/Preferences", "App settings. Deleting them resets the apps."},
    {"Library/Mobile Documents",
     "iCloud Drive files. Deleting them here deletes them on all your devices."},
    {"Library/CloudStorage", "Synced files (Dropbox, Google Drive, OneDrive\u2026). They would "
                             "also be deleted from the cloud."},
}};

constexpr std::array<std::string_view, 9> homeFolders = {
    "Desktop", "Documents", "Downloads", "Library",      "Movies",
    "Music",   "Pictures",  "Public",    "Applications",
};

constexpr std::array<std::string_view, 8> markers = {
    ".photoslibrary/", ".photolibrary/",  ".musiclibrary/", ".tvlibrary/",
    ".fcpbundle/",     ".imovielibrary/", ".app/",          ".logicx/",
};

constexpr std::string_view rootReason = "Root folder of the system or your user account.";
constexpr std::string_view ruleFolderReason =
    "Folder used by macOS. Dorvik empties its contents but keeps the folder.";
constexpr std::string_view standardFolderReason =
    "Standard folder in your user account. You can delete its contents, but not the folder.";
constexpr std::string_view applicationReason = "Application. Use Uninstall to remove its data too.";

SafetyVerdict answer(Risk risk, std::string_view reason) {
    return SafetyVerdict{risk, std::string(reason)};
}

size_t pieceCount(std::string_view path) {
    size_t count = 0;
    bool inPiece = false;
    for (char ch : path) {
        if (ch == '/') {
            inPiece = false;
        } else if (!inPiece) {
            inPiece = true;
            ++count;
        }
    }
    return count;
}

std::optional<SafetyVerdict> homeVerdict(std::string_view relative) {
    if (std::ranges::find(homeFolders, relative) != homeFolders.end()) {
        return answer(Risk::protected_, standardFolderReason);
    }
    for (const ProtectedPath& row : homePaths) {
        if (relative.starts_with(row.path) &&
            (relative.size() == row.path.size() || relative[row.path.size()] == '/' ||
             relative[row.path.size()] == '.')) {
            const bool reviewed = row.path.starts_with(reviewedHomePrefix);
            return answer(reviewed ? Risk::review : Risk::protected_, row.reason);
        }
    }
    return std::nullopt;
}

SafetyVerdict applicationVerdict(std::string_view input, std::string_view path) {
    if (path.starts_with("/System/")) {
        return answer(Risk::protected_, "macOS app.");
    }
    const auto identifier = platform::bundleIdentifier(std::string(input));
    if (!identifier) {
        return answer(Risk::review, applicationReason);
    }
    if (identifier->starts_with("com.apple.")) {
        return answer(Risk::protected_, "Apple app included with macOS or required by the system.");
    }
    const std::vector<std::string> running = platform::runningApplicationIdentifiers();
    if (std::ranges::find(running, *identifier) != running.end()) {
        return answer(Risk::protected_, "The app is open. Quit it before removing it.");
    }
    if (*identifier == platform::mainBundleIdentifier) {
        return answer(Risk::protected_, "This is Dorvik.");
    }
    return answer(Risk::review, applicationReason);
}

SafetyVerdict flatpakAppVerdict(const platform::FlatpakAppFolder& app) {
    const std::vector<std::string> running = platform::runningApplicationIdentifiers();
    if (std::ranges::find(running, app.id) != running.end()) {
        return answer(Risk::protected_, "The app is open. Quit it before removing it.");
    }
    return answer(Risk::review, "Flatpak app. Uninstalling it asks Flatpak to remove it; it "
                                "can\u2019t be put back from the Trash.");
}

// The ordered steps over the text of `path`, with `home` as the home folder and `dataHome` as the
// user's data folder.
SafetyVerdict textVerdict(std::string_view input, const std::string& path, const std::string& home,
                          const std::string& dataHome) {
    const std::string homePrefix = home + "/";

    if (path == "/" || path == home || path == "/Users" || path == "/Applications" ||
        path == "/Library") {
        return answer(Risk::protected_, rootReason);
    }
    if (pieceCount(path) < 2) {
        return answer(Risk::protected_, rootReason);
    }
    // A Flatpak app's own folder is Flatpak's to remove, even in the system's installation under
    // /var/lib; everything inside it is judged by the tables as usual.
    if (const auto flatpakApp = platform::flatpakAppOfFolder(path)) {
        return flatpakAppVerdict(*flatpakApp);
    }
    for (const auto& table : {std::span<const ProtectedPath>(systemPaths),
                              std::span<const ProtectedPath>(linuxSystemPaths)}) {
        for (const ProtectedPath& row : table) {
            if (isAtOrUnder(path, row.path)) {
                return answer(Risk::protected_, row.reason);
            }
        }
    }
    // The desktop Trash's folders, one of them the folder of its rule, say what they are.
    if (auto trash = ProtectedPlaces::trashFolderVerdict(path, dataHome)) {
        return *trash;
    }
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        if (path == ruleFolder(rule, home, dataHome)) {
            return answer(Risk::protected_, ruleFolderReason);
        }
    }
    if (path == home + "/.Trash") {
        return answer(Risk::protected_, ruleFolderReason);
    }
    if (const JunkRule* rule = JunkCatalogue::ruleCovering(path, home, dataHome)) {
        return SafetyVerdict{rule->risk, rule->explanation};
    }
    if (path.starts_with(homePrefix)) {
        if (auto found = homeVerdict(std::string_view(path).substr(homePrefix.size()))) {
            return *found;
        }
    }
    for (std::string_view marker : markers) {
        if (path.find(marker) != std::string::npos) {
            return SafetyVerdict{Risk::protected_,
                                 "Inside a ." + std::string(marker.substr(1, marker.size() - 2)) +
                                     " package. Deleting individual pieces corrupts it; remove "
                                     "the whole package if you no longer use it."};
        }
    }
    if (path.ends_with(".app")) {
        return applicationVerdict(input, path);
    }
    if (path.ends_with(".photoslibrary") || path.ends_with(".musiclibrary")) {
        return answer(Risk::protected_, "Your photo or music library. Manage it from its app.");
    }
    if (path.starts_with(homePrefix + "Library/")) {
        return answer(Risk::review,
                      "App data. The app may lose settings or content if it\u2019s still "
                      "installed.");
    }
    if (path.starts_with("/Library/") || path.starts_with("/private/") ||
        path.starts_with("/usr/") || path.starts_with("/opt/")) {
        return answer(Risk::review,
                      "Shared file used by the system or a tool. May require an administrator "
                      "password.");
    }
    if (path.starts_with(homePrefix + "Downloads/")) {
        return answer(Risk::safe, "Download. Make sure you don\u2019t need it.");
    }
    if (path.starts_with(homePrefix + ".Trash/")) {
        return answer(Risk::safe, "Already in the Trash.");
    }
    if (path.starts_with(homePrefix)) {
        return answer(Risk::review, "Personal file. Make sure you have a backup if it matters.");
    }
    return answer(Risk::review, "Review before deleting.");
}

// The ordered steps, then the places protected beyond them.
SafetyVerdict judged(std::string_view input, const std::string& path, const std::string& home,
                     const std::string& dataHome) {
    SafetyVerdict answer = textVerdict(input, path, home, dataHome);
    if (answer.risk == Risk::protected_) {
        return answer;
    }
    if (auto place = ProtectedPlaces::verdict(path, home, dataHome)) {
        return *place;
    }
    return answer;
}

} // namespace

SafetyVerdict verdict(std::string_view input) {
    // Judged without the data volume's prefix, as the user knows the path.
    const std::string path = canonicalPath(input);
    const std::string home = platform::homeDirectory();
    const std::string dataHome = platform::dataHomeDirectory();
    SafetyVerdict asWritten = judged(input, path, home, dataHome);
    if (asWritten.risk == Risk::protected_) {
        return asWritten;
    }
    // The text may lead elsewhere: a link or ".." in the folders above the item, or a home folder
    // reached through a link. What the system would act on is judged then, against the home
    // folder where it really lies; the item itself is never followed.
    const std::string actedOn = canonicalPath(platform::withResolvedFolders(path));
    const std::string realHome = platform::resolvedPath(home);
    if (actedOn == path && realHome == home) {
        return asWritten;
    }
    return judged(actedOn, actedOn, realHome, platform::resolvedPath(dataHome));
}

std::span<const ProtectedPath> protectedSystemPaths() {
    return systemPaths;
}

std::span<const ProtectedPath> protectedLinuxSystemPaths() {
    return linuxSystemPaths;
}

std::span<const ProtectedPath> protectedHomePaths() {
    return homePaths;
}

std::span<const std::string_view> standardHomeFolders() {
    return homeFolders;
}

std::span<const std::string_view> packageMarkers() {
    return markers;
}

} // namespace dorvik::SafetyRules
