#include "catalogue/Removal.h"

namespace dorvik {

std::string_view caseName(Removal removal) {
    switch (removal) {
    case Removal::trash:
        return "trash";
    case Removal::uninstall:
        return "uninstall";
    case Removal::permanent:
        break;
    }
    return "permanent";
}

std::string_view outcomeLabel(Removal removal) {
    switch (removal) {
    case Removal::trash:
        return "Moved to Trash";
    case Removal::uninstall:
        return "Uninstalled with Flatpak";
    case Removal::permanent:
        break;
    }
    return "Deleted immediately";
}

} // namespace dorvik
