#pragma once

// One kind of junk: a folder whose direct children may go, how dangerous that is and how they go.

#include "catalogue/JunkGroup.h"
#include "catalogue/Removal.h"
#include "catalogue/Risk.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace dorvik {

struct JunkRule {
    std::string id; // stable; Quick Clean's selection holds these
    JunkGroup group = JunkGroup::system;
    std::string title;
    std::string explanation; // why it is junk; also the reason of the safety verdict
    Risk risk = Risk::review;
    // Absolute when it starts with "/", else relative to the home folder, or to the user's data
    // folder ($XDG_DATA_HOME) when `inDataHome` is set.
    std::string base;
    bool inDataHome = false;
    Removal removal = Removal::permanent;
    bool inSmartClean = false;
    // When present, only children with one of these extensions (lower case) count.
    std::optional<std::set<std::string>> extensions;
    // When present, only children older than this count.
    std::optional<int> minAgeDays;
    // Children with these names never count, and no rule covers what lies under them.
    std::set<std::string> excludedNames;

    bool operator==(const JunkRule&) const = default;
};

// The rule's folder: `base` itself when absolute, else `base` appended to `dataHome` or `home`.
std::string ruleFolder(const JunkRule& rule, std::string_view home, std::string_view dataHome);

// Whether the rule empties a Trash: the Mac's ~/.Trash or the desktop's. Whatever treats the Trash
// apart (Quick Clean lists it, the scheduled clean never empties it, the Overview offers to)
// asks this rather than a rule's id.
bool emptiesATrash(const JunkRule& rule);

// Whether a child of this name passes the rule's extension filter: always when it has none,
// otherwise when the name's extension, lower-cased, is one of the rule's.
bool passesExtensionFilter(const JunkRule& rule, std::string_view name);

} // namespace dorvik
