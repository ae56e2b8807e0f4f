#include "cleaning/DeveloperArtifacts.h"

#include "base/PathNames.h"

#include <algorithm>
#include <array>

namespace dorvik {

namespace {

constexpr std::array<ArtifactName, 8> names = {{
    {"node_modules", "Node dependencies. `npm install` restores them."},
    {".venv", "Python virtual environment."},
    {"venv", "Python virtual environment."},
    {"Pods", "CocoaPods dependencies. `pod install` restores them."},
    {".next", "Next.js build output."},
    {".turbo", "Turborepo cache."},
    {"DerivedData", "Xcode intermediate builds."},
    {"__pycache__", "Python bytecode."},
}};

const ArtifactName* artifactNamed(std::string_view name) {
    const auto found = std::ranges::find(names, name, &ArtifactName::name);
    return found == names.end() ? nullptr : &*found;
}

} // namespace

std::span<const ArtifactName> artifactNames() {
    return names;
}

std::vector<DevItem> artifactsInTree(const FileNodePtr& root, std::string_view home) {
    std::vector<DevItem> items;
    if (root == nullptr) {
        return items;
    }
    const std::string systemLibrary = withoutTrailingSlashes(home) + "/Library/";
    // The tree is held by `root` for the whole search, so plain pointers do.
    std::vector<const FileNode*> stack = {root.get()};
    while (!stack.empty()) {
        const FileNode* folder = stack.back();
        stack.pop_back();
        for (const FileNodePtr& child : folder->children) {
            if (!child->isDirectory || child->deleted) {
                continue;
            }
            // The size first: it rules out nearly every folder without a look at its name.
            const ArtifactName* artifact =
                child->size > artifactFloor ? artifactNamed(child->name) : nullptr;
            if (artifact != nullptr) {
                std::string path = canonicalPath(child->path());
                if (!path.starts_with(systemLibrary)) {
                    items.push_back(DevItem{
                        .path = std::move(path),
                        .title = pathName(folder->name) + " / " + child->name,
                        .detail = std::string(artifact->detail),
                        .size = child->size,
                        .lastTouched = folder->modified,
                        .removal = Removal::permanent,
                    });
                    continue;
                }
            }
            if (!child->isPackage) {
                stack.push_back(child.get());
            }
        }
    }
    return items;
}

std::vector<DevItem> developerRuleItems(const std::vector<JunkFinding>& junk) {
    std::vector<DevItem> items;
    for (const JunkFinding& finding : junk) {
        if (finding.rule.group != JunkGroup::developer) {
            continue;
        }
        for (const JunkItem& item : finding.items) {
            items.push_back(DevItem{
                .path = canonicalPath(item.url),
                .title = finding.rule.title,
                .detail = finding.rule.explanation,
                .size = item.size,
                .lastTouched = item.modified.value_or(0),
                .removal = finding.rule.removal,
            });
        }
    }
    return items;
}

std::vector<DevItem> developerItems(const ScanResult* scan, const std::vector<JunkFinding>& junk,
                                    std::string_view home) {
    std::vector<DevItem> ruleItems = developerRuleItems(junk);
    std::vector<DevItem> items;
    if (scan != nullptr) {
        items = artifactsInTree(scan->root, home);
        std::erase_if(items, [&ruleItems](const DevItem& artifact) {
            return std::ranges::any_of(ruleItems, [&artifact](const DevItem& ruleItem) {
                return isAtOrUnder(artifact.path, ruleItem.path);
            });
        });
    }
    items.insert(items.end(), std::make_move_iterator(ruleItems.begin()),
                 std::make_move_iterator(ruleItems.end()));
    return items;
}

} // namespace dorvik
