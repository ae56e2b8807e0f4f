#include "scanning/LinuxPlaces.h"

#include "base/PathNames.h"

#include <algorithm>
#include <array>
#include <vector>

namespace dorvik::LinuxPlaces {

namespace {

using B = StorageBucket;

// How far a row reaches.
enum class Reach {
    always,
    // Only for a scan whose root is the place itself or lies above it. The temporary folders are
    // where anyone unpacks, builds or tries things: a folder the user chose to scan inside one is
    // looked at for what it holds, while seen from above (the whole disk, /var, /tmp itself)
    // everything in them is temporary.
    fromAbove,
};

struct PlaceRow {
    std::string_view path;
    // Absent: the row leaves the place to the Mac's rules.
    std::optional<B> bucket;
    Reach reach = Reach::always;
};

constexpr std::nullopt_t macRules = std::nullopt;

// Searched in this order; the first row whose path holds the directory decides. Each row says
// why it is not what the Mac's table says.
constexpr std::array<PlaceRow, 21> placeRows = {{
    // Locally built tools and toolchains, as Homebrew's prefix was on a Mac: the Mac's row.
    {"/usr/local", macRules},
    // The system itself: its programs, libraries and the data of its packages. The Mac's /usr
    // beside /usr/local lies on the sealed system volume that a scan never enters, so its table
    // only knows Homebrew's prefix there.
    {"/usr", B::system},
    // Self-contained applications (browsers, vendors' suites) install here on Linux; the Mac's
    // table reads /opt as Homebrew's prefix.
    {"/opt", B::applications},
    // Installed snaps and Flatpak applications with their runtimes: a Mac's /Applications.
    {"/snap", B::applications},
    {"/var/lib/snapd", B::applications},
    {"/var/lib/flatpak", B::applications},
    // The images and volumes of Docker and Podman, which a Mac keeps in Docker's own folder.
    {"/var/lib/docker", B::developer},
    {"/var/lib/containers", B::developer},
    // The state of the system's packages and services (a Mac's /private/var/db).
    {"/var/lib", B::system},
    // The system's logs go round on their own and are protected from removal, unlike a Mac's
    // /private/var/log.
    {"/var/log", B::system},
    // Package caches that the package manager fills again when needed.
    {"/var/cache", B::junk},
    // The temporary folders, which a Mac keeps under /private.
    {"/var/tmp", B::junk, Reach::fromAbove},
    {"/tmp", B::junk, Reach::fromAbove},
    // Programs, libraries, the kernel and the configuration, which a Mac keeps on its sealed
    // system volume or under /private (on many systems the first four are links into /usr,
    // which the walk does not follow).
    {"/bin", B::system},
    {"/sbin", B::system},
    {"/lib", B::system},
    {"/lib32", B::system},
    {"/lib64", B::system},
    {"/libx32", B::system},
    {"/boot", B::system},
    {"/etc", B::system},
}};

// Relative to a Linux home, searched in this order; the first row whose path holds the
// directory decides.
struct HomeRow {
    std::string_view path;
    B bucket;
};

constexpr std::array<HomeRow, 6> homeRows = {{
    // The desktop's Trash, where a Mac has ~/.Trash.
    {".local/share/Trash", B::trash},
    // What applications keep, where a Mac has ~/Library: their data and their settings.
    {".local/share", B::appData},
    {".config", B::appData},
    // Each Flatpak application's own data (a Mac's containers).
    {".var/app", B::appData},
    // Caches that applications and tools fill again, a Mac's ~/Library/Caches.
    {".cache", B::junk},
    // Snaps' revisions and data in the home.
    {"snap", B::applications},
}};

template <typename Row> struct SplitRow {
    std::vector<std::string_view> pieces;
    Row row;
};

template <typename Row, size_t N>
std::vector<SplitRow<Row>> splitRows(const std::array<Row, N>& rows) {
    std::vector<SplitRow<Row>> result;
    result.reserve(N);
    for (const Row& row : rows) {
        result.push_back({pathPieces(row.path), row});
    }
    return result;
}

bool startsWith(std::span<const std::string_view> components,
                const std::vector<std::string_view>& pieces) {
    if (components.size() < pieces.size()) {
        return false;
    }
    for (size_t index = 0; index < pieces.size(); ++index) {
        if (components[index] != pieces[index]) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<StorageBucket> systemPlaceBucket(std::span<const std::string_view> components,
                                               size_t scanRootDepth) {
    static const auto rows = splitRows(placeRows);
    if (components.empty()) {
        return std::nullopt;
    }
    for (const auto& [pieces, row] : rows) {
        if (!startsWith(components, pieces)) {
            continue;
        }
        if (row.reach == Reach::fromAbove && scanRootDepth > pieces.size()) {
            continue; // the scan began inside the place
        }
        return row.bucket;
    }
    return std::nullopt;
}

std::optional<size_t> homeDepth(std::span<const std::string_view> components,
                                std::span<const std::string_view> ownHome) {
    if (!ownHome.empty() && components.size() >= ownHome.size() &&
        std::equal(ownHome.begin(), ownHome.end(), components.begin())) {
        return ownHome.size();
    }
    if (components.size() >= 1 && components[0] == "root") {
        return 1;
    }
    // The second component is the account's name and is not looked at.
    if (components.size() >= 2 && components[0] == "home") {
        return 2;
    }
    return std::nullopt;
}

std::optional<StorageBucket> homeBucket(std::span<const std::string_view> belowHome,
                                        std::optional<StorageBucket> inherited) {
    static const auto rows = splitRows(homeRows);
    for (const auto& [pieces, row] : rows) {
        if (startsWith(belowHome, pieces)) {
            return row.bucket;
        }
    }
    // What the Mac's rules say of the rest of a home.
    if (!belowHome.empty() && belowHome[0] == "Applications") {
        return inherited;
    }
    if (inherited == StorageBucket::appData) {
        return inherited;
    }
    return std::nullopt;
}

} // namespace dorvik::LinuxPlaces
