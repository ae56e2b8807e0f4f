#pragma once

// Notice of changes to one folder's own entries: something created, deleted or renamed in it,
// or the folder itself moved or deleted. One descriptor a folder, read when it becomes readable;
// it says only that something changed, never what.

#include <optional>

namespace dorvik::platform {

// A non-blocking descriptor that becomes readable after a change in the folder; none when the
// folder cannot be watched (missing, unreadable, out of watches).
std::optional<int> openFolderEvents(const char* folder);

// Reads away every notice waiting on the descriptor, so that it is quiet until the next change.
void drainFolderEvents(int descriptor);

void closeFolderEvents(int descriptor);

} // namespace dorvik::platform
