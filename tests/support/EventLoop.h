#pragma once

// Driving the real event loop from a test: AppState's workers post their results to it.

#include <chrono>
#include <functional>

namespace dorvik::test {

// Runs the event loop until `done` holds or the time is up; false when the time ran out.
bool waitUntil(const std::function<bool()>& done,
               std::chrono::milliseconds limit = std::chrono::seconds(20));

// Lets every worker end and every posted result land. A result that lands may set off more work
// (the archive of a scan), so the loop keeps running while workers finish.
void settle();

} // namespace dorvik::test
