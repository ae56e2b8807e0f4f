#pragma once

namespace dorvik::platform {

// How many processors this process may run on (its affinity mask), at least 1.
int usableProcessors();

} // namespace dorvik::platform
