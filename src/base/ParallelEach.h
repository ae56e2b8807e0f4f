#pragma once

// Runs a piece of work for every index of a range on a few threads that take the indexes in turn;
// the calling thread works too. Returns when every index is done.

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace dorvik {

template <typename Work> void forEachIndexInParallel(size_t count, int threads, Work&& work) {
    std::atomic<size_t> next = 0;
    auto takeInTurn = [&] {
        for (size_t index = next++; index < count; index = next++) {
            work(index);
        }
    };
    const size_t helpers =
        std::min(static_cast<size_t>(std::max(threads, 1)), std::max<size_t>(count, 1)) - 1;
    std::vector<std::jthread> pool;
    pool.reserve(helpers);
    for (size_t helper = 0; helper < helpers; ++helper) {
        pool.emplace_back(takeInTurn);
    }
    takeInTurn();
} // the helpers join as the pool goes

} // namespace dorvik
