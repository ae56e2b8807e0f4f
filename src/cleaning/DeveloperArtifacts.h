#pragma once

// Folders a tool can make again (dependency trees, virtual environments, build output), found by
// name anywhere in the scanned tree, and beside them the items of the junk rules for developers.
// Nothing here touches the disk: it reads the tree of a scan and findings made earlier.

#include "catalogue/Removal.h"
#include "cleaning/JunkFinding.h"
#include "scanning/ScanResult.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

struct DevItem {
    std::string path;   // canonical: without the data volume's prefix; the item's identity
    std::string title;  // "project / node_modules", or the rule's title
    std::string detail; // what it is
    int64_t size = 0;   // allocated bytes
    // When the project last changed, seconds since 1970; 0 (shown as "never") when unknown.
    double lastTouched = 0;
    Removal removal = Removal::permanent;

    bool operator==(const DevItem&) const = default;
};

struct ArtifactName {
    std::string_view name; // matched exactly, case and all
    std::string_view detail;
};

// The folder names that mark an artifact, with what each is.
std::span<const ArtifactName> artifactNames();

// A folder of such a name counts only above this many allocated bytes.
inline constexpr int64_t artifactFloor = 20'000'000;

// The artifacts below `root`, in the order the search meets them. The search keeps its own
// stack, so any depth of folders is walked; it skips what is marked removed, never goes below an
// artifact or into a package, and treats a folder under `home`/Library as ordinary, since what
// the system keeps there is no project's.
std::vector<DevItem> artifactsInTree(const FileNodePtr& root, std::string_view home);

// One item for each item of the findings of developer rules, in their order; other findings are
// left alone.
std::vector<DevItem> developerRuleItems(const std::vector<JunkFinding>& junk);

// The list of the Developer page: the scan's artifacts (none without a scan), then the items of
// the developer rules. An artifact that lies inside a rule's item (a node_modules in a tool's
// cache) is the rule's to list, and is not listed again.
std::vector<DevItem> developerItems(const ScanResult* scan, const std::vector<JunkFinding>& junk,
                                    std::string_view home);

} // namespace dorvik
