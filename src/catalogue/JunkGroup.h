#pragma once

// The headings of the junk rules, in the order the Junk page shows them.

#include <array>
#include <string_view>

namespace dorvik {

enum class JunkGroup {
    system,
    trash,
    mail,
    developer,
    devices,
    downloads,
};

inline constexpr std::array<JunkGroup, 6> allJunkGroups = {
    JunkGroup::system,    JunkGroup::trash,   JunkGroup::mail,
    JunkGroup::developer, JunkGroup::devices, JunkGroup::downloads,
};

struct JunkGroupInfo {
    std::string_view value; // the case's text value, "system" …
    std::string_view title;
    std::string_view symbol;
};

const JunkGroupInfo& info(JunkGroup group);

} // namespace dorvik
