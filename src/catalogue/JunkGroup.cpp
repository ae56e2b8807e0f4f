#include "catalogue/JunkGroup.h"

namespace dorvik {

namespace {

constexpr std::array<JunkGroupInfo, allJunkGroups.size()> groupInfos = {{
    {"system", "System Junk", "sparkles"},
    {"trash", "Trash", "trash.fill"},
    {"mail", "Mail", "paperclip"},
    {"developer", "Developer", "hammer.fill"},
    {"devices", "iPhone & iPad", "iphone"},
    {"downloads", "Downloads", "arrow.down.circle.fill"},
}};

} // namespace

const JunkGroupInfo& info(JunkGroup group) {
    return groupInfos[static_cast<size_t>(group)];
}

} // namespace dorvik
