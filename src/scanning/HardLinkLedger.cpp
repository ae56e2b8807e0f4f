#include "scanning/HardLinkLedger.h"

#include <algorithm>
#include <iterator>

namespace dorvik {

void HardLinkLedger::take(HardLinkLedger&& other) {
    if (paths_.empty()) {
        paths_ = std::move(other.paths_);
        return;
    }
    paths_.reserve(paths_.size() + other.paths_.size());
    std::move(other.paths_.begin(), other.paths_.end(), std::back_inserter(paths_));
    other.paths_.clear();
}

void HardLinkLedger::settle(ScanTally& tally) {
    std::ranges::sort(paths_, [](const LinkedPath& a, const LinkedPath& b) {
        return a.key != b.key ? a.key < b.key : a.order < b.order;
    });
    for (size_t i = 0; i < paths_.size(); ++i) {
        LinkedPath& path = paths_[i];
        if (i == 0 || paths_[i - 1].key != path.key) {
            tally.countFile(*path.folder, path.allocated, path.logicalSize, path.kind, path.bucket);
            continue;
        }
        ++tally.skippedLinks;
        if (path.node != nullptr) {
            auto& children = path.folder->children;
            children.erase(std::ranges::find(children, path.node));
        }
    }
    paths_.clear();
}

} // namespace dorvik
