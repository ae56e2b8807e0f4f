#include "removal/Removal.h"

namespace dorvik {

std::string_view caseName(Removal removal) {
    return removal == Removal::trash ? "trash" : "permanent";
}

} // namespace dorvik
