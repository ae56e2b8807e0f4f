#pragma once

// How many threads a walk of the disk takes. Whatever the number, a walk's result is the same.

namespace dorvik {

// The walk on the calling thread alone, folder after folder in the order of a single walk: for
// tests, for comparison, and for callers that already run many walks at once.
inline constexpr int oneThread = 1;

// A walk gains little past this many threads: the folders' locks and the disk are shared.
inline constexpr int mostWalkThreads = 8;

// One thread for each processor this process may run on, up to mostWalkThreads.
int machineThreads();

} // namespace dorvik
