#include "catalogue/JunkCatalogue.h"

#include "base/PathNames.h"

#include <array>

namespace dorvik::JunkCatalogue {

namespace {

struct RuleRow {
    std::string_view id;
    JunkGroup group;
    std::string_view title;
    Risk risk;
    std::string_view base;
    Removal removal;
    bool inSmartClean;
    std::string_view explanation;
    // Only the rules that filter or keep names set these.
    const std::set<std::string>* excludedNames = nullptr;
    const std::set<std::string>* extensions = nullptr;
    int minAgeDays = 0;      // 0: no age limit
    bool inDataHome = false; // `base` lies in the user's data folder, not in the home folder
};

// Folders in the Caches folder that the system, or Dorvik itself, needs.
const std::set<std::string> cachesKeptBySystem = {
    "com.apple.bird", "CloudKit",          "com.apple.containermanagerd",
    "FamilyCircle",   "com.apple.akd",     "com.apple.nsurlsessiond",
    "app.dorvik.mac", "com.apple.HomeKit", "com.apple.ap.adprivacyd",
};

const std::set<std::string> installerExtensions = {"dmg", "pkg", "mpkg", "xip", "iso"};
constexpr int installerMinAgeDays = 7;

// What Linux desktops download to install: packages, Flatpak references, snaps, and AppImages,
// which are the application itself.
const std::set<std::string> linuxInstallerExtensions = {"deb", "rpm", "appimage", "flatpakref",
                                                        "snap"};

constexpr Removal P = Removal::permanent;
constexpr Removal T = Removal::trash;
constexpr bool Q = true;

// The Mac's seventeen rules, then what a Linux desktop adds in the same form: its Trash, its
// downloaded packages, and the package caches the seventeen do not reach.
constexpr std::array<RuleRow, 20> ruleRows = {{
    {"user-caches", JunkGroup::system, "App caches", Risk::safe, "Library/Caches", P, Q,
     "Temporary copies apps keep to run faster. They\u2019re rebuilt automatically; some apps may "
     "take a little longer the first time.",
     &cachesKeptBySystem},
    {"user-logs", JunkGroup::system, "Logs and crash reports", Risk::safe, "Library/Logs", P, Q,
     "Activity and error history from apps. Only useful for diagnosing problems."},
    {"saved-state", JunkGroup::system, "Saved window state", Risk::safe,
     "Library/Saved Application State", P, Q,
     "Window positions used to reopen apps the way you left them. Recreated automatically."},
    {"system-logs", JunkGroup::system, "System logs", Risk::review, "/Library/Logs", P, false,
     "Logs shared by all users. May require administrator permissions."},
    {"trash", JunkGroup::trash, "Trash", Risk::safe, ".Trash", P, Q,
     "Everything you\u2019ve already moved to the Trash. Emptying it actually frees the space."},
    {"mail-downloads", JunkGroup::mail, "Attachments opened from Mail", Risk::safe,
     "Library/Containers/com.apple.mail/Data/Library/Mail Downloads", P, Q,
     "Copies of attachments you opened. The original stays in the email."},
    {"xcode-derived", JunkGroup::developer, "Xcode \u00b7 DerivedData", Risk::safe,
     "Library/Developer/Xcode/DerivedData", P, Q,
     "Intermediate Xcode build products. Rebuilt when you build (the first build takes longer)."},
    {"xcode-device-support", JunkGroup::developer, "Xcode \u00b7 Device Support", Risk::safe,
     "Library/Developer/Xcode/iOS DeviceSupport", P, Q,
     "Symbols for iOS/watchOS versions. Xcode downloads them again when you connect a device."},
    {"xcode-watch-support", JunkGroup::developer, "Xcode \u00b7 watchOS Support", Risk::safe,
     "Library/Developer/Xcode/watchOS DeviceSupport", P, Q,
     "Symbols for watchOS versions. Downloaded again if needed."},
    {"simulator-caches", JunkGroup::developer, "Simulators \u00b7 Caches", Risk::safe,
     "Library/Developer/CoreSimulator/Caches", P, Q,
     "iOS Simulator caches. They\u2019re rebuilt automatically."},
    {"xcode-archives", JunkGroup::developer, "Xcode \u00b7 Archives", Risk::review,
     "Library/Developer/Xcode/Archives", T, false,
     "Archived builds for distribution. Used to read crash reports from released versions."},
    {"npm-cache", JunkGroup::developer, "npm cache", Risk::safe, ".npm/_cacache", P, false,
     "Packages downloaded by npm. Downloaded again when you install."},
    {"gradle-cache", JunkGroup::developer, "Gradle cache", Risk::safe, ".gradle/caches", P, false,
     "Dependencies downloaded by Gradle (Android/Java)."},
    {"dot-cache", JunkGroup::developer, "Tool caches (~/.cache)", Risk::review, ".cache", P, false,
     "pip, Hugging Face, pre-commit\u2026 Note: they may contain large models you\u2019d have to "
     "download again."},
    {"ios-updates", JunkGroup::devices, "Downloaded iOS updates", Risk::safe,
     "Library/iTunes/iPhone Software Updates", P, Q,
     "iOS/iPadOS installers downloaded by Finder. Downloaded again if needed."},
    {"ios-backups", JunkGroup::devices, "iPhone/iPad backups", Risk::review,
     "Library/Application Support/MobileSync/Backup", T, false,
     "Local backups of your devices. Delete them only if you have an iCloud backup or no longer "
     "need them."},
    {"old-installers", JunkGroup::downloads, "Installers in Downloads", Risk::review, "Downloads",
     T, false,
     ".dmg/.pkg/.xip files downloaded more than a week ago. The app is usually already "
     "installed.",
     nullptr, &installerExtensions, installerMinAgeDays},
    // The desktop's Trash: an item is an entry of its "files" folder, and its ".trashinfo" goes
    // with it when it is removed.
    {"desktop-trash", JunkGroup::trash, "Trash", Risk::safe, "Trash/files", P, Q,
     "Everything you\u2019ve already moved to the Trash. Emptying it actually frees the space.",
     nullptr, nullptr, 0, true},
    {"linux-installers", JunkGroup::downloads, "Packages and AppImages in Downloads", Risk::review,
     "Downloads", T, false,
     ".deb/.rpm/.flatpakref/.snap files and AppImages downloaded more than a week ago. A package "
     "is usually already installed; an AppImage is the app itself.",
     nullptr, &linuxInstallerExtensions, installerMinAgeDays},
    {"cargo-cache", JunkGroup::developer, "Cargo cache", Risk::safe, ".cargo/registry/cache", P,
     false, "Crates downloaded by Cargo (Rust). Downloaded again when you build."},
}};

std::vector<JunkRule> buildRules() {
    std::vector<JunkRule> built;
    built.reserve(ruleRows.size());
    for (const RuleRow& row : ruleRows) {
        built.push_back(JunkRule{
            .id = std::string(row.id),
            .group = row.group,
            .title = std::string(row.title),
            .explanation = std::string(row.explanation),
            .risk = row.risk,
            .base = std::string(row.base),
            .inDataHome = row.inDataHome,
            .removal = row.removal,
            .inSmartClean = row.inSmartClean,
            .extensions = row.extensions != nullptr ? std::optional(*row.extensions) : std::nullopt,
            .minAgeDays = row.minAgeDays > 0 ? std::optional(row.minAgeDays) : std::nullopt,
            .excludedNames =
                row.excludedNames != nullptr ? *row.excludedNames : std::set<std::string>{},
        });
    }
    return built;
}

// The first non-empty piece of a relative path, or the empty text.
std::string_view firstName(std::string_view relative) {
    while (relative.starts_with('/')) {
        relative.remove_prefix(1);
    }
    return relative.substr(0, relative.find('/'));
}

} // namespace

const std::vector<JunkRule>& rules() {
    static const std::vector<JunkRule> catalogue = buildRules();
    return catalogue;
}

const JunkRule* ruleCovering(std::string_view path, std::string_view home,
                             std::string_view dataHome) {
    for (const JunkRule& rule : rules()) {
        const std::string folder = ruleFolder(rule, home, dataHome);
        if (!isUnder(path, folder)) {
            continue;
        }
        const std::string_view first = firstName(path.substr(folder.size()));
        if (rule.excludedNames.contains(std::string(first))) {
            return nullptr;
        }
        if (passesExtensionFilter(rule, first)) {
            return &rule;
        }
    }
    return nullptr;
}

} // namespace dorvik::JunkCatalogue
