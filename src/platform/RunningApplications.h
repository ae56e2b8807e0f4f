#pragma once

// The applications running now, known by the bundles their executables lie in.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::platform {

// The bundle that an executable at this path belongs to: the innermost "<Name>.app" whose
// Contents/MacOS folder holds it, at any depth. None for an executable outside such a folder.
std::optional<std::string> bundleOfExecutable(std::string_view executablePath);

// The identifiers of the applications running now, each once: the bundles of every process whose
// executable this user may read, and the Flatpak apps whose sandboxes this user may look into. A
// process outside a bundle or a sandbox, or in a bundle without an identifier, is not reported.
std::vector<std::string> runningApplicationIdentifiers();

} // namespace dorvik::platform
