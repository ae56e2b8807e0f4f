#include "catalogue/JunkCatalogue.h"
#include "platform/HomeDirectory.h"
#include "removal/SafetyRules.h"
#include "support/Bundles.h"
#include "support/ChildProcess.h"
#include "support/Environment.h"
#include "support/TempDir.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>

namespace dorvik {
namespace {

constexpr Risk safe = Risk::safe;
constexpr Risk review = Risk::review;
constexpr Risk guarded = Risk::protected_;

const std::string root = "Root folder of the system or your user account.";
const std::string ruleFolderKept =
    "Folder used by macOS. Dorvik empties its contents but keeps the folder.";
const std::string standardFolder =
    "Standard folder in your user account. You can delete its contents, but not the folder.";
const std::string download = "Download. Make sure you don\u2019t need it.";
const std::string personal = "Personal file. Make sure you have a backup if it matters.";
const std::string otherPath = "Review before deleting.";
const std::string appData =
    "App data. The app may lose settings or content if it\u2019s still installed.";
const std::string shared =
    "Shared file used by the system or a tool. May require an administrator password.";
const std::string application = "Application. Use Uninstall to remove its data too.";
const std::string sip = "Part of macOS, protected by System Integrity Protection (SIP).";
const std::string caches = "Temporary copies apps keep to run faster. They\u2019re rebuilt "
                           "automatically; some apps may take a little longer the first time.";
const std::string installers = ".dmg/.pkg/.xip files downloaded more than a week ago. The app is "
                               "usually already installed.";
const std::string appleData = "Apple app data.";
const std::string settings = "App settings. Deleting them resets the apps.";
const std::string library = "Your photo or music library. Manage it from its app.";
const std::string trashItself = "The Trash itself. Empty it instead.";
const std::string trashed =
    "Everything you\u2019ve already moved to the Trash. Emptying it actually frees the space.";

std::string insidePackage(const std::string& extension) {
    return "Inside a ." + extension +
           " package. Deleting individual pieces corrupts it; remove the whole package if you no "
           "longer use it.";
}

struct Case {
    std::string path;
    Risk risk;
    std::string reason;
};

void expectVerdicts(const std::vector<Case>& cases) {
    for (const Case& expected : cases) {
        const SafetyVerdict verdict = SafetyRules::verdict(expected.path);
        EXPECT_EQ(info(verdict.risk).caseName, info(expected.risk).caseName)
            << "\"" << expected.path << "\": " << verdict.reason;
        EXPECT_EQ(verdict.reason, expected.reason) << "\"" << expected.path << "\"";
    }
}

// Judged on the text alone: none of these paths exists, and the home folder need not either.
TEST(SafetyRules, PathsAreJudgedByTheirText) {
    test::ScopedEnvironment home("HOME", "/Users/me");
    expectVerdicts({
        // the data volume's prefix comes off, and only that exact prefix
        {"/System/Volumes/Data", guarded, root},
        {"/System/Volumes/Data/", guarded, root},
        {"/System/Volumes/Data/Users/me/Downloads/a.zip", safe, download},
        {"/System/Volumes/Data/Users/me", guarded, root},
        {"/System/Volumes/DataX/a/b", guarded, sip},
        // roots, and everything one level down whatever its name
        {"/", guarded, root},
        {"/Users/me", guarded, root},
        {"/Users", guarded, root},
        {"/Applications", guarded, root},
        {"/Library", guarded, root},
        {"/Volumes", guarded, root},
        {"/foo", guarded, root},
        {"/System", guarded, root},
        {"/.Spotlight-V100", guarded, root},
        {"", guarded, root},
        {"foo", guarded, root},
        {"//", guarded, root},
        {"foo/bar", review, otherPath},
        {"/Volumes/Backup", review, otherPath},
        {"/Users/other/Downloads/a.zip", review, otherPath},
        // the system table: exact prefixes of whole names, case-sensitive, no links followed
        {"/System/Library/Kernels/kernel", guarded, sip},
        {"/usr/lib/libc.dylib", guarded, "macOS libraries."},
        {"/usr/libexec/x", guarded, "macOS components."},
        {"/usr/libx/y", review, shared},
        {"/private/etc/hosts", guarded, "System configuration."},
        {"/private/var/db/x", guarded, "System databases (security, updates, users)."},
        {"/Library/Preferences/SystemConfiguration/preferences.plist", guarded,
         "Network and system configuration."},
        {"/.Spotlight-V100/Store-V2", guarded,
         "Spotlight index. To rebuild it, use System Settings > Spotlight."},
        {"/etc/hosts", guarded, "System configuration."}, // where Linux keeps it
        {"/var/db/x", review, otherPath},
        {"/tmp/x", review, otherPath},
        {"/system/foo", review, otherPath},
        {"/private/tmp/x", review, shared},
        {"/Library/Preferences/com.example.plist", review, shared},
        {"/usr/local/bin/tool", review, shared},
        {"/opt/homebrew/bin/brew", review, shared},
        // catalogue folders stay; what lies in them takes the rule's risk, however deep
        {"/Users/me/Library/Caches", guarded, ruleFolderKept},
        {"/Users/me/.Trash", guarded, ruleFolderKept},
        {"/Library/Logs", guarded, ruleFolderKept},
        {"/Users/me/Downloads", guarded, ruleFolderKept}, // the installers rule's folder
        {"/Users/me/Library/Caches/com.example", safe, caches},
        {"/Users/me/Library/Caches/com.example/deep/er/file", safe, caches},
        {"/Users/me/Library/Caches//com.example", safe, caches},
        {"/Users/me/Library/Caches/Foo.app/Contents/x", safe, caches}, // over the markers
        {"/Library/Logs/DiagnosticReports", review,
         "Logs shared by all users. May require administrator permissions."},
        {"/Users/me/.Trash/Old.app", safe,
         "Everything you\u2019ve already moved to the Trash. Emptying it actually frees the "
         "space."},
        // under an Apple container, and reached all the same
        {"/Users/me/Library/Containers/com.apple.mail/Data/Library/Mail Downloads", guarded,
         ruleFolderKept},
        {"/Users/me/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/a.pdf", safe,
         "Copies of attachments you opened. The original stays in the email."},
        {"/Users/me/Library/Containers/com.apple.mail/Data/x", guarded, appleData},
        // an excluded name ends the search: the later steps judge it
        {"/Users/me/Library/Caches/CloudKit", review, appData},
        {"/Users/me/Library/Caches/app.dorvik.mac/x", review, appData},
        {"/Users/me/Library/Caches/cloudkit", safe, caches},
        // the installers rule looks at the extension of the first name only, in any case
        {"/Users/me/Downloads/old.dmg", review, installers},
        {"/Users/me/Downloads/OLD.ISO", review, installers},
        {"/Users/me/Downloads/x.pkg/Contents/Archive.pax", review, installers},
        {"/Users/me/Downloads/a.zip", safe, download},
        {"/Users/me/Downloads/.dmg", safe, download},
        {"/Users/me/Downloads/Folder/x.dmg", safe, download},
        {"/Users/me/Downloads/Foo.app/Contents/MacOS/Foo", guarded, insidePackage("app")},
        {"/Users/me/Downloads/Foo.app", review, application},
        {"/Users/me/.cache/huggingface", review,
         "pip, Hugging Face, pre-commit\u2026 Note: they may contain large models you\u2019d have "
         "to download again."},
        {"/Users/me/.npm/_cacache/index-v5", safe,
         "Packages downloaded by npm. Downloaded again when you install."},
        {"/Users/me/.npm", review, personal},
        // the home folder's own names
        {"/Users/me/Library", guarded, standardFolder},
        {"/Users/me/Desktop", guarded, standardFolder},
        {"/Users/me/Desktop/notes.txt", review, personal},
        {"/Users/me/Library/Preferences", review, settings},
        {"/Users/me/Library/Preferences/com.example.plist", review, settings},
        {"/Users/me/Library/Preferences.old", review, settings},
        {"/Users/me/Library/Mail.old", guarded,
         "Your Mail mailboxes. Manage your email from the Mail app."},
        {"/Users/me/Library/Mail/V10/x.app/y", guarded,
         "Your Mail mailboxes. Manage your email from the Mail app."},
        {"/Users/me/Library/Containers/com.apple.Safari", guarded, appleData},
        {"/Users/me/Library/Containers/com.applesauce", review, appData},
        {"/Users/me/Library/Group Containers/group.com.apple.notes", guarded,
         "Data shared by Apple apps."},
        {"/Users/me/Library/CloudStorage/Dropbox/a", guarded,
         "Synced files (Dropbox, Google Drive, OneDrive\u2026). They would also be deleted "
         "from the cloud."},
        {"/Users/me/Library/Application Support/Foo/db", review, appData},
        {"/Users/me/.Trash/x", safe,
         "Everything you\u2019ve already moved to the Trash. Emptying it actually frees the "
         "space."},
        {"/Users/me/.Trashy", review, personal},
        // packages
        {"/Users/me/Pictures/Photos Library.photoslibrary", guarded, library},
        {"/Users/me/Pictures/Photos Library.photoslibrary/database/Photos.sqlite", guarded,
         insidePackage("photoslibrary")},
        {"/Users/me/Music/Music Library.musiclibrary", guarded, library},
        {"/Users/me/Movies/TV Library.tvlibrary", review, personal},
        {"/Users/me/Movies/TV Library.tvlibrary/x", guarded, insidePackage("tvlibrary")},
        {"/Users/me/Movies/Cut.fcpbundle/x", guarded, insidePackage("fcpbundle")},
        {"/Users/me/Movies/iMovie.imovielibrary", review, personal},
        {"/Users/me/Music/Song.logicx", review, personal},
        {"/Users/me/Music/Song.logicx/Alternatives/000", guarded, insidePackage("logicx")},
        {"/Applications/Foo.app/Contents/MacOS/Foo", guarded, insidePackage("app")},
        {"/System/Volumes/Data/Applications/Foo.app/Contents/Info.plist", guarded,
         insidePackage("app")},
        {"/Volumes/Disk/Old.photolibrary/x", guarded, insidePackage("photolibrary")},
        {"/System/Applications/Calculator.app", guarded, sip},
        {"/Applications/Missing.app", review, application},
    });
}

TEST(SafetyRules, EveryTableRowAndEveryCatalogueFolder) {
    test::ScopedEnvironment home("HOME", "/Users/me");
    EXPECT_EQ(SafetyRules::protectedSystemPaths().size(), 23u);
    EXPECT_EQ(SafetyRules::protectedHomePaths().size(), 13u);
    EXPECT_EQ(SafetyRules::standardHomeFolders().size(), 9u);
    EXPECT_EQ(SafetyRules::packageMarkers().size(), 8u);

    std::vector<Case> cases;
    for (const auto& table :
         {SafetyRules::protectedSystemPaths(), SafetyRules::protectedLinuxSystemPaths()}) {
        for (const auto& row : table) {
            cases.push_back({std::string(row.path) + "/x", guarded, std::string(row.reason)});
        }
    }
    cases.push_back({"/etc/passwd", guarded, "System configuration."});
    cases.push_back(
        {"/var/lib/dpkg/status", guarded, "Data of the system's packages and services."});
    cases.push_back({"/etcetera/x", review, "Review before deleting."});
    for (const auto& row : SafetyRules::protectedHomePaths()) {
        const Risk risk = row.path == "Library/Preferences" ? review : guarded;
        for (const std::string tail : {"", "/x", ".backup"}) {
            cases.push_back(
                {"/Users/me/" + std::string(row.path) + tail, risk, std::string(row.reason)});
        }
    }
    for (const std::string_view name : SafetyRules::standardHomeFolders()) {
        if (name != "Downloads") { // the installers rule's folder, judged a step earlier
            cases.push_back({"/Users/me/" + std::string(name), guarded, standardFolder});
        }
    }
    for (const std::string_view marker : SafetyRules::packageMarkers()) {
        const std::string extension(marker.substr(1, marker.size() - 2));
        cases.push_back(
            {"/Volumes/X/Y" + std::string(marker) + "z", guarded, insidePackage(extension)});
    }
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        const std::string folder = ruleFolder(rule, "/Users/me", platform::dataHomeDirectory());
        // The desktop Trash's folder says what it is.
        const bool desktopTrash = emptiesATrash(rule) && rule.inDataHome;
        cases.push_back({folder, guarded, desktopTrash ? trashItself : ruleFolderKept});
        // An item the rule counts, whatever the case of its extension.
        std::string extension = rule.extensions ? *rule.extensions->begin() : "dmg";
        for (char& ch : extension) {
            ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
        }
        cases.push_back({folder + "/Item." + extension, rule.risk, rule.explanation});
    }
    expectVerdicts(cases);
}

TEST(SafetyRules, HomeIsReadAfreshAndWithoutItsTrailingSlash) {
    {
        test::ScopedEnvironment home("HOME", "/Users/me/");
        expectVerdicts({
            {"/Users/me", guarded, root},
            {"/Users/me/Downloads/a.zip", safe, download},
        });
    }
    test::ScopedEnvironment home("HOME", "/home/you");
    expectVerdicts({
        {"/Users/me/Downloads/a.zip", review, otherPath},
        {"/home/you/Downloads/a.zip", safe, download},
        {"/home/you", guarded, root},
        {"/home/you/Library/Caches", guarded, ruleFolderKept},
    });
}

const std::string keychains = "Your keychains: passwords, keys and certificates.";
const std::string holdsHome = "Holds your home folder.";
const std::string holdsProtected = "Holds protected folders. Delete what is inside it instead.";

// What the system would act on is judged, not only the text: the folders above the item are
// resolved as the system resolves them (links, "..") and so is the home folder; the item itself
// is never followed, since removing a link removes only the link.
TEST(SafetyRules, ThePathTheSystemWouldActOnIsJudged) {
    test::TempDir dir;
    const std::string home = dir / "users/alice";
    test::makeFolder(home + "/Documents/old");
    test::makeFolder(home + "/Library/Keychains");
    test::makeFolder(home + "/Downloads");
    test::makeSymlink(home, dir / "homelink");
    test::makeSymlink(home + "/Documents", dir / "docs");
    {
        test::ScopedEnvironment variable("HOME", home);
        expectVerdicts({
            {dir / "homelink/Documents", guarded, standardFolder},
            {dir / "homelink/Library/Keychains", guarded, keychains},
            {home + "/Documents/old/../../Documents", guarded, standardFolder},
            {dir / "users", guarded, holdsHome},
            {dir.path(), guarded, holdsHome},
            {dir / "docs/../Downloads/a.zip", safe, download},
            // the item itself is a link: only the link would go
            {dir / "homelink", review, otherPath},
            {dir / "docs", review, otherPath},
        });
    }
    test::ScopedEnvironment variable("HOME", dir / "homelink");
    expectVerdicts({
        {home + "/Documents", guarded, standardFolder},
        {home + "/Library/Keychains", guarded, keychains},
        {home + "/Downloads/a.zip", safe, download},
        {dir / "users", guarded, holdsHome},
    });
}

TEST(SafetyRules, FoldersThatHoldProtectedPlacesAreProtected) {
    test::ScopedEnvironment home("HOME", "/Users/me");
    test::ScopedEnvironment data("XDG_DATA_HOME", "/Users/me/.local/share");
    expectVerdicts({
        {"/Library/Preferences", guarded, holdsProtected},
        {"/Library/Application Support", guarded, holdsProtected},
        {"/private/var", guarded, holdsProtected},
        {"/Users/me/Library/Application Support", guarded, holdsProtected},
        {"/Users/me/Library/Group Containers", guarded, holdsProtected},
        {"/Users/me/.local/share", guarded, holdsProtected},
        // beside them, not above them
        {"/Library/Preferences/com.example.plist", review, shared},
        {"/Users/me/Library/Application Support/Example", review, appData},
        {"/Users/me/Library/Group Containers/com.example", review, appData},
        // a junk rule's folder is kept as a folder, not for what it holds
        {"/Users/me/Library/Developer", review, appData},
        {"/Users/me/.npm", review, personal},
        {"/Users/me/.local/share/fonts", review, personal},
    });
}

TEST(SafetyRules, LinuxPrivateAndSharedPlacesAreProtected) {
    test::ScopedEnvironment home("HOME", "/Users/me");
    test::ScopedEnvironment data("XDG_DATA_HOME", "/Users/me/.local/share");
    const std::string trash = "The Trash itself. Empty it instead.";
    expectVerdicts({
        {"/Users/me/.ssh", guarded, "Your SSH keys and the hosts you trust."},
        {"/Users/me/.ssh/id_ed25519", guarded, "Your SSH keys and the hosts you trust."},
        {"/Users/me/.gnupg/private-keys-v1.d", guarded, "Your GnuPG keys."},
        {"/Users/me/.local/share/Trash", guarded, trash},
        {"/Users/me/.local/share/Trash/files", guarded, trash},
        {"/Users/me/.local/share/Trash/info", guarded, trash},
        {"/Users/me/.local/share/Trash/files/old.txt", safe, trashed},
        {"/Users/me/.local/share/Trash/files/old/inner.txt", safe, trashed},
        {"/Users/me/.local/share/Trash/info/old.txt.trashinfo", review, personal},
        {"/var/log", guarded, "System logs."},
        {"/var/log/syslog.1", guarded, "System logs."},
        {"/srv/www", guarded, "Data this computer serves."},
        {"/mnt/usb", guarded, "Another disk is mounted here."},
        {"/mnt/usb/photos", review, otherPath},
        {"/srv/www/site/index.html", review, otherPath},
        {"/Users/me/.sshd", review, personal},
    });
}

// The home folders of the password database belong to their users. Root's is another user's to
// anyone else, so the check runs as an ordinary user.
TEST(SafetyRules, AnotherUsersHomeIsProtected) {
    test::ScopedEnvironment home("HOME", "/Users/me");
    struct Seen {
        int risk;
        char reason[120];
    };
    const auto seen = test::runUnprivileged<Seen>([] {
        const SafetyVerdict verdict = SafetyRules::verdict("/root/.bashrc");
        Seen answer{static_cast<int>(verdict.risk), {}};
        verdict.reason.copy(answer.reason, sizeof answer.reason - 1);
        return answer;
    });
    ASSERT_TRUE(seen);
    EXPECT_EQ(seen->risk, static_cast<int>(guarded));
    EXPECT_EQ(std::string(seen->reason), "Another user's home folder.");
}

// Bundles are the one place where the verdict reads the disk: the identifier in Info.plist, and
// which applications run.
TEST(SafetyRules, ApplicationBundles) {
    test::TempDir dir;
    test::ScopedEnvironment home("HOME", dir / "home");
    const std::string apple = dir / "Apple.app";
    const std::string appleBinary = dir / "AppleBinary.app";
    const std::string dorvik = dir / "Dorvik.app";
    const std::string plain = dir / "Plain.app";
    const std::string unnamed = dir / "Unnamed.app";
    const std::string bare = dir / "Bare.app";
    test::writeInfoPlist(apple, {{"CFBundleIdentifier", "com.apple.Safari"}});
    test::writeInfoPlist(appleBinary, {{"CFBundleIdentifier", "com.apple.Notes"}},
                         test::PlistFormat::binary);
    test::writeInfoPlist(dorvik, {{"CFBundleIdentifier", "app.dorvik.mac"}});
    test::writeInfoPlist(plain, {{"CFBundleIdentifier", "com.applesauce.Plain"}});
    test::writeInfoPlist(unnamed, {{"CFBundleName", "Unnamed"}});
    test::makeFolder(bare);
    const std::string appleApp = "Apple app included with macOS or required by the system.";
    expectVerdicts({
        {apple, guarded, appleApp},
        {appleBinary, guarded, appleApp},
        {dorvik, guarded, "This is Dorvik."},
        {plain, review, application},
        {unnamed, review, application},
        {bare, review, application},
        {dir / "Missing.app", review, application},
        {apple + "/Contents/Info.plist", guarded, insidePackage("app")},
        // the bundle is opened at the path as given, before the prefix came off
        {"/System/Volumes/Data" + apple, review, application},
    });
}

TEST(SafetyRules, AFlatpakAppsOwnFolderIsForReviewAndWhatIsInsideAsTheTablesSay) {
    test::TempDir dir;
    test::ScopedEnvironment home("HOME", dir / "home");
    test::ScopedEnvironment data("XDG_DATA_HOME", dir / "home/.local/share");
    const std::string flatpak =
        "Flatpak app. Uninstalling it asks Flatpak to remove it; it can\u2019t be put back from "
        "the Trash.";
    const std::string packages = "Data of the system's packages and services.";
    const std::string userApps = dir / "home/.local/share/flatpak/app";
    expectVerdicts({
        {"/var/lib/flatpak/app/org.example.Writer", review, flatpak},
        {"/var/lib/flatpak/app/org.example.Writer/x86_64", guarded, packages},
        {"/var/lib/flatpak/app", guarded, packages},
        {"/var/lib/flatpak/app/org.example", guarded, packages},
        {"/var/lib/flatpak/runtime/org.example.Platform", guarded, packages},
        {userApps + "/org.example.Writer", review, flatpak},
        {userApps + "/org.example.Writer-2_beta", review, flatpak},
    });
    EXPECT_NE(SafetyRules::verdict(userApps + "/org.example.Writer/current").reason, flatpak);
    EXPECT_NE(SafetyRules::verdict(userApps + "/org.exam ple.Writer").reason, flatpak);
}

TEST(SafetyRules, ARunningApplicationIsProtectedWhileItRuns) {
    test::TempDir dir;
    test::ScopedEnvironment home("HOME", dir / "home");
    const std::string bundle = dir / "Sleeper.app";
    test::writeInfoPlist(
        bundle, {{"CFBundleIdentifier", "com.example.sleeper"}, {"CFBundleExecutable", "Sleeper"}});
    const std::string executable = test::installExecutable(bundle, "/bin/sleep", "Sleeper");
    // a copy elsewhere with the same identifier is the same application
    const std::string copy = dir / "Copy.app";
    test::writeInfoPlist(copy, {{"CFBundleIdentifier", "com.example.sleeper"}});
    // an Apple application says so, running or not
    const std::string apple = dir / "AppleSleeper.app";
    test::writeInfoPlist(apple, {{"CFBundleIdentifier", "com.apple.sleeper"}});
    const std::string appleExecutable = test::installExecutable(apple, "/bin/sleep", "Sleeper");

    const std::string open = "The app is open. Quit it before removing it.";
    const std::string appleApp = "Apple app included with macOS or required by the system.";
    expectVerdicts({{bundle, review, application}, {copy, review, application}});
    {
        test::ChildProcess running(executable, {"60"});
        test::ChildProcess runningApple(appleExecutable, {"60"});
        expectVerdicts({
            {bundle, guarded, open},
            {copy, guarded, open},
            {apple, guarded, appleApp},
        });
    }
    expectVerdicts({{bundle, review, application}, {copy, review, application}});
}

} // namespace
} // namespace dorvik
