#pragma once

// The user-level forms of a path, with the home folder of this process. Node paths are real paths
// and may carry the data volume's prefix; whatever is compared, shown or exported goes through
// the canonical form (base/PathNames.h).

#include "base/PathNames.h"

#include <string>
#include <string_view>

namespace dorvik {

// The canonical path with this process's home folder written as "~".
std::string displayPath(std::string_view path);

} // namespace dorvik
