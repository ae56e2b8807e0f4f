#include "reclaim/DuplicateSelection.h"

#include <algorithm>

namespace dorvik {

namespace {

// The first file of the group, oldest first, that the selection leaves out.
FileNodePtr firstUnselected(const DuplicateGroup& group, const DuplicateSelection& selection) {
    const auto found =
        std::find_if(group.files.begin(), group.files.end(),
                     [&](const FileNodePtr& file) { return !selection.contains(file.get()); });
    return found == group.files.end() ? nullptr : *found;
}

} // namespace

bool keepsOneCopy(const std::vector<DuplicateGroup>& groups, const DuplicateSelection& selection) {
    return std::all_of(groups.begin(), groups.end(), [&](const DuplicateGroup& group) {
        return firstUnselected(group, selection) != nullptr;
    });
}

DuplicateSelection allCopies(const std::vector<DuplicateGroup>& groups) {
    DuplicateSelection copies;
    for (const DuplicateGroup& group : groups) {
        for (size_t index = 1; index < group.files.size(); ++index) {
            copies.insert(group.files[index].get());
        }
    }
    return copies;
}

std::vector<PlanItem> duplicatePlanItems(const std::vector<DuplicateGroup>& groups,
                                         const DuplicateSelection& selection) {
    std::vector<PlanItem> items;
    for (const DuplicateGroup& group : groups) {
        for (const FileNodePtr& file : group.files) {
            if (selection.contains(file.get())) {
                items.push_back(makePlanItem(file->path(), file->size, Removal::trash));
            }
        }
    }
    return items;
}

std::vector<std::pair<FileNodePtr, FileNodePtr>>
sharingPairs(const std::vector<DuplicateGroup>& groups, const DuplicateSelection& selection) {
    std::vector<std::pair<FileNodePtr, FileNodePtr>> pairs;
    for (const DuplicateGroup& group : groups) {
        const FileNodePtr original = firstUnselected(group, selection);
        if (!original) {
            continue; // at least one file of a group always stays out of the batch
        }
        for (const FileNodePtr& file : group.files) {
            if (selection.contains(file.get())) {
                pairs.emplace_back(file, original);
            }
        }
    }
    return pairs;
}

void markShared(std::vector<DuplicateGroup>& groups, const DuplicateSelection& selection,
                const std::vector<std::string>& converted) {
    const std::set<std::string> convertedPaths(converted.begin(), converted.end());
    for (DuplicateGroup& group : groups) {
        bool any = false;
        for (const FileNodePtr& file : group.files) {
            if (convertedPaths.contains(file->path())) {
                group.shared.insert(file.get());
                any = true;
            }
        }
        if (any) {
            if (const FileNodePtr original = firstUnselected(group, selection)) {
                group.shared.insert(original.get());
            }
        }
    }
}

} // namespace dorvik
