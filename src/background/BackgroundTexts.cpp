#include "background/BackgroundTexts.h"

#include "base/TextForms.h"

namespace dorvik::BackgroundTexts {

std::string lowSpaceBody(int64_t free) {
    return "Only " + TextForms::size(free) + " free. Open Dorvik to see what's taking up space.";
}

bool announcesClean(int64_t freed) {
    return freed > announcedCleanFloor;
}

std::string cleanedTitle(int64_t freed) {
    return "Dorvik cleaned " + TextForms::size(freed);
}

std::string removedAppTitle(std::string_view name, int64_t leftBytes) {
    return std::string(name) + " left " + TextForms::size(leftBytes) + " behind";
}

} // namespace dorvik::BackgroundTexts
