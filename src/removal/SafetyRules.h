#pragma once

// The one judge of whether a path may be removed. An ordered list of tests over the path's text
// that ends at the first test that answers; nothing else in the program keeps a list of what must
// not be touched. Verdicts are never cached: whether an application runs changes from one call to
// the next.

#include "removal/SafetyVerdict.h"

#include <span>
#include <string_view>

namespace dorvik::SafetyRules {

// The verdict on an absolute path (no trailing slash by convention). The ordered steps compare the
// text exactly, case-sensitive, after taking off the data volume's prefix; the places protected
// beyond them (Linux's private and shared places, other people's homes, every folder that holds a
// protected place) are asked next. When the folders above the item or the home folder lead
// elsewhere through a link or "..", the path the system would act on is judged too, against the
// home folder's real path, and the text can then only protect more. The item itself is never
// followed. Reads the home folder afresh each time; any thread.
SafetyVerdict verdict(std::string_view path);

struct ProtectedPath {
    std::string_view path;
    std::string_view reason;
};

// Absolute paths that are protected with everything under them, searched in this order.
std::span<const ProtectedPath> protectedSystemPaths();

// The same for the places a Linux system keeps itself (/etc, /boot, /var/lib …), searched next.
std::span<const ProtectedPath> protectedLinuxSystemPaths();

// Paths relative to the home folder, searched in this order. Protected, except the one that
// starts with `reviewedHomePrefix`, which asks for review.
std::span<const ProtectedPath> protectedHomePaths();
inline constexpr std::string_view reviewedHomePrefix = "Library/Preferences";

// Folders directly in the home folder that stay, though their contents may go.
std::span<const std::string_view> standardHomeFolders();

// Texts that mark a path as lying inside a package ("/.app/" …), searched in this order.
std::span<const std::string_view> packageMarkers();

} // namespace dorvik::SafetyRules
