#pragma once

namespace dorvik::platform {

// Whether a process with this id runs now (one of another user's counts). Used to tell a file
// left by a killed process from one still being written.
bool processIsAlive(long pid);

// The id of this process, as files that name their writer carry it.
long currentProcessId();

} // namespace dorvik::platform
