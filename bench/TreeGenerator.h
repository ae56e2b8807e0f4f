#pragma once

// Makes a deterministic tree of real files for tests and benchmarks: deep and shallow folders,
// many small files, some large and some sparse ones, hard links and symbolic links, with a mix
// of extensions. The same seed and count give the same tree.

#include <cstdint>
#include <string>

namespace dorvik::bench {

struct GeneratedTree {
    int64_t folders = 0;
    int64_t files = 0; // regular files, hard links and symbolic links
    int64_t hardLinks = 0;
    int64_t symlinks = 0;
};

// Creates `entries` entries (folders included) below `root`, which must exist and be empty.
GeneratedTree generateTree(const std::string& root, int64_t entries, uint64_t seed = 1);

} // namespace dorvik::bench
