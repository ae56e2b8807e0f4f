// dorvik-make-tree ROOT ENTRIES [SEED]: makes the benchmark tree in an empty folder.

#include "TreeGenerator.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <sys/stat.h>

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: dorvik-make-tree ROOT ENTRIES [SEED]\n");
        return 2;
    }
    try {
        mkdir(argv[1], 0755);
        const auto made = dorvik::bench::generateTree(
            argv[1], std::atoll(argv[2]), argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1);
        std::printf("%lld folders, %lld files (%lld hard links, %lld symbolic links)\n",
                    static_cast<long long>(made.folders), static_cast<long long>(made.files),
                    static_cast<long long>(made.hardLinks), static_cast<long long>(made.symlinks));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "dorvik-make-tree: %s\n", error.what());
        return 1;
    }
    return 0;
}
