#pragma once

// Data in the user's Library left by applications that are gone: items named after a bundle
// identifier that nothing on the machine claims any more. The search is deliberately
// conservative: an item is listed only when every test below lets it through.

#include "apps/AppInventory.h"
#include "apps/InstalledApp.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

struct Leftover {
    std::string path;               // the identity in a selection
    std::string identifier;         // the name without a known suffix, case as found
    std::string location;           // the label of the Library location it lies in
    int64_t size = 0;               // allocated bytes
    std::optional<double> modified; // content modification, seconds since 1970

    bool operator==(const Leftover&) const = default;
};

namespace LeftoverSearch {

// Anything smaller isn't worth the user's attention (binary: 64 KiB).
inline constexpr int64_t smallestLeftover = 65'536;

// The locations looked at, named as the search's first test compares them. Group containers,
// cookies, launch agents and scripts are never looked at.
inline constexpr std::array<std::string_view, 8> searchedLocations{
    "Library/Application Support",
    "Library/Caches",
    "Library/Containers",
    "Library/Preferences",
    "Library/Saved Application State",
    "Library/HTTPStorages",
    "Library/WebKit",
    "Library/Logs",
};

// The test that dropped an entry, in the order they run; `leftover` when none did.
enum class Outcome {
    otherLocation,
    fewerThanThreeParts,
    reservedFamily,
    space,
    installed,
    partOfInstalled,
    knownToSystem,
    tooSmall,
    leftover,
};

// What the tests ask of the machine. Both are asked only of entries that passed every test
// before theirs.
struct Probes {
    // Whether the system knows an application with this identifier (case as found) anywhere.
    std::function<bool(const std::string& identifier)> knownToSystem;
    // The entry's allocated bytes.
    std::function<int64_t(const std::string& path)> measure;
};

// Probes of this machine: the application roots searched for the identifier, and the walk of
// Measure folder.
Probes systemProbes();

// The identifiers of the bundles in the application roots, read from each bundle: what the
// search needs to know of the installed applications, without measuring them.
std::vector<std::string> bundleIdentifiersInRoots();

// The lower-cased identifiers of the applications given; those without one add nothing.
std::set<std::string> installedIdentifiers(const std::vector<std::string>& bundleIDs);
std::set<std::string> installedIdentifiers(const std::vector<InstalledApp>& apps);

// Whether the search looks at an entry of this location label.
bool isSearchedLocation(std::string_view label);

// The entry's name without ".plist", then ".savedState", then ".binarycookies", each taken off the
// end when present.
std::string identifierOf(std::string_view entryName);

struct Examination {
    Outcome outcome = Outcome::otherLocation;
    std::string identifier; // set once the location passed
    int64_t size = 0;       // set once measured
};

// Every test from the name on, for an entry whose location already passed.
Examination examineName(const AppInventory::LibraryEntry& entry,
                        const std::set<std::string>& installed, const Probes& probes);

// Every test, the location first.
Examination examine(const AppInventory::LibraryEntry& entry, const std::set<std::string>& installed,
                    const Probes& probes);

// The entries that pass every test as leftovers, largest first.
std::vector<Leftover> search(const std::set<std::string>& installed,
                             const std::vector<AppInventory::LibraryEntry>& entries,
                             const Probes& probes);

// The search over this user's Library against the applications given.
std::vector<Leftover> search(const std::vector<InstalledApp>& apps);
std::vector<Leftover> search(const std::vector<std::string>& installedBundleIDs);

} // namespace LeftoverSearch

} // namespace dorvik
