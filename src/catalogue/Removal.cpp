#include "catalogue/Removal.h"

namespace dorvik {

std::string_view caseName(Removal removal) {
    return removal == Removal::trash ? "trash" : "permanent";
}

std::string_view outcomeLabel(Removal removal) {
    return removal == Removal::trash ? "Moved to Trash" : "Deleted immediately";
}

} // namespace dorvik
