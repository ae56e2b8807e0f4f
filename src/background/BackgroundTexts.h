#pragma once

// The words of the background services' notifications, as keys of the program's wording.

#include <cstdint>
#include <string>
#include <string_view>

namespace dorvik::BackgroundTexts {

inline constexpr std::string_view lowSpaceTitle = "Your Mac is running out of space";
// "Only 9.9 GB free. …"; a negative free space reads as zero.
std::string lowSpaceBody(int64_t free);

// A scheduled clean that freed this much or less passes silently.
inline constexpr int64_t announcedCleanFloor = 50'000'000;
bool announcesClean(int64_t freed);
// "Dorvik cleaned 1.2 GB".
std::string cleanedTitle(int64_t freed);
inline constexpr std::string_view cleanedBody =
    "Caches, logs and other regenerable files. Everything else was left untouched.";

// "Writer left 9.8 MB behind".
std::string removedAppTitle(std::string_view name, int64_t leftBytes);
inline constexpr std::string_view removedAppBody =
    "Open Dorvik to review and remove what it left on your Mac.";

} // namespace dorvik::BackgroundTexts
