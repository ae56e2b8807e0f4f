#pragma once

// Paths as the system resolves them: every link followed and every "." and ".." taken in the
// folder where the system meets it (after a link, ".." leads up from the link's target, not back
// along the text). Behind the part that exists, what does not is taken as written, "." and ".."
// folded as text (there is no link there to lead elsewhere).

#include <string>

namespace dorvik::platform {

// The whole absolute path resolved, its last name included.
std::string resolvedPath(const std::string& path);

// The path the system would act on to remove it: the folders above the last name resolved, the
// last name kept as it is (removing a link removes the link). A last name of "." or ".." is
// resolved with the rest, since it names a folder above.
std::string withResolvedFolders(const std::string& path);

} // namespace dorvik::platform
