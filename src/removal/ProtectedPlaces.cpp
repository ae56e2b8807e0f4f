#include "removal/ProtectedPlaces.h"

#include "base/PathNames.h"
#include "platform/HomeDirectory.h"
#include "removal/SafetyRules.h"

#include <array>
#include <vector>

namespace dorvik::ProtectedPlaces {

namespace {

using SafetyRules::ProtectedPath;

// Relative to the home folder, protected with everything in them.
constexpr std::array<ProtectedPath, 2> linuxHomePaths = {{
    {".ssh", "Your SSH keys and the hosts you trust."},
    {".gnupg", "Your GnuPG keys."},
}};

// Folders whose every entry is a place of its own: each is protected, what lies in it is not.
constexpr std::array<ProtectedPath, 2> mountParents = {{
    {"/srv", "Data this computer serves."},
    {"/mnt", "Another disk is mounted here."},
}};

// The home trash's own folders, relative to the data folder. What lies in them may go.
constexpr std::array<std::string_view, 3> trashFolders = {"Trash", "Trash/files", "Trash/info"};

constexpr std::string_view trashReason = "The Trash itself. Empty it instead.";
constexpr std::string_view otherHomeReason = "Another user's home folder.";
constexpr std::string_view holdsHomeReason = "Holds your home folder.";
constexpr std::string_view holdsProtectedReason =
    "Holds protected folders. Delete what is inside it instead.";

SafetyVerdict guarded(std::string_view reason) {
    return SafetyVerdict{Risk::protected_, std::string(reason)};
}

std::string below(const std::string& folder, std::string_view relative) {
    return folder + "/" + std::string(relative);
}

// Every place that the rules protect for what it holds, as an absolute path. A junk rule's folder
// is kept only as a folder (its contents are what the rule cleans), so a folder above one, such
// as ~/.npm, is not protected for it.
std::vector<std::string> protectedPlaces(const std::string& home, const std::string& dataHome,
                                         const std::vector<std::string>& otherHomes) {
    std::vector<std::string> places = otherHomes;
    for (const auto& table :
         {SafetyRules::protectedSystemPaths(), SafetyRules::protectedLinuxSystemPaths()}) {
        for (const ProtectedPath& row : table) {
            places.emplace_back(row.path);
        }
    }
    for (const ProtectedPath& row : SafetyRules::protectedHomePaths()) {
        if (!row.path.starts_with(SafetyRules::reviewedHomePrefix)) {
            places.push_back(below(home, row.path));
        }
    }
    for (const ProtectedPath& row : linuxHomePaths) {
        places.push_back(below(home, row.path));
    }
    for (std::string_view folder : trashFolders) {
        places.push_back(below(dataHome, folder));
    }
    return places;
}

} // namespace

std::optional<SafetyVerdict> trashFolderVerdict(std::string_view path,
                                                const std::string& dataHome) {
    for (std::string_view folder : trashFolders) {
        if (path == below(dataHome, folder)) {
            return guarded(trashReason);
        }
    }
    return std::nullopt;
}

std::optional<SafetyVerdict> verdict(std::string_view path, const std::string& home,
                                     const std::string& dataHome) {
    const std::string homePrefix = home + "/";
    if (path.starts_with(homePrefix)) {
        const std::string_view relative = path.substr(homePrefix.size());
        for (const ProtectedPath& row : linuxHomePaths) {
            if (isAtOrUnder(relative, row.path)) {
                return guarded(row.reason);
            }
        }
    }
    if (auto trash = trashFolderVerdict(path, dataHome)) {
        return trash;
    }
    const std::vector<std::string> otherHomes = platform::otherUsersHomeDirectories();
    for (const std::string& otherHome : otherHomes) {
        if (otherHome != home && isAtOrUnder(path, otherHome)) {
            return guarded(otherHomeReason);
        }
    }
    for (const ProtectedPath& row : mountParents) {
        const size_t slash = path.rfind('/');
        if (slash != std::string_view::npos && path.substr(0, slash) == row.path) {
            return guarded(row.reason);
        }
    }
    if (isUnder(home, path)) {
        return guarded(holdsHomeReason);
    }
    for (const std::string& place : protectedPlaces(home, dataHome, otherHomes)) {
        if (isUnder(place, path)) {
            return guarded(holdsProtectedReason);
        }
    }
    return std::nullopt;
}

} // namespace dorvik::ProtectedPlaces
