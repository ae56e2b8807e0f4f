#pragma once

#include "scanning/WalkThreads.h"

#include <cstdint>
#include <string>

namespace dorvik {

struct FolderMeasure {
    int64_t bytes = 0; // allocated, directories' own blocks included, hard links once
    int64_t fileCount = 0;
};

// Measures a folder the way a scan would, without building a tree: one volume, links not
// followed, no exclusions. A file path measures that file; {0, 0} when the walk cannot start.
// Callers that measure many folders at once keep to one thread each; one that measures a single
// folder while the user waits may give it the machine's.
FolderMeasure measureFolder(const std::string& path, int threads = oneThread);

} // namespace dorvik
