#pragma once

// What counts as junk on a Mac, and on a Linux desktop beside it: one constant, ordered list of
// rules. The safety rules consult it too, so a change here changes what may be deleted anywhere
// in the program.

#include "catalogue/JunkRule.h"

#include <string_view>
#include <vector>

namespace dorvik::JunkCatalogue {

// The rules in their order, which matters: both the search below and the finder walk it from the
// top. Built once, on first use.
const std::vector<JunkRule>& rules();

// The rule that covers a path, with `home` as the home folder and `dataHome` as the user's data
// folder, judged on the first name under each rule's folder; nullptr when none does. A first name
// in a rule's `excludedNames` ends the search with none: such a folder is not junk under any
// heading. A rule's age limit plays no part here.
const JunkRule* ruleCovering(std::string_view path, std::string_view home,
                             std::string_view dataHome);

} // namespace dorvik::JunkCatalogue
