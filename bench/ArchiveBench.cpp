// Measures the scan archive against the scan it keeps: how long writing "last-scan.dvscan" and
// reading it back take next to the scan itself, how much of the write is the encoding the
// application does on its main thread, and how well our LZFSE encoder compresses the
// real payload next to zlib at level 1 (the fast setting a user of a general library would pick)
// and level 6.
//
//   archive_bench [FOLDER]    (default /usr)

#include "lzfse/Lzfse.h"
#include "scanning/ScanArchive.h"
#include "scanning/Scanner.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <zlib.h>

namespace {

using Clock = std::chrono::steady_clock;

// The best of a few runs, in milliseconds.
template <typename Run> double bestMilliseconds(int runs, Run run) {
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        const auto start = Clock::now();
        run();
        best =
            std::min(best, std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    return best;
}

size_t zlibSize(const std::vector<uint8_t>& payload, int level) {
    uLongf size = compressBound(payload.size());
    std::vector<uint8_t> out(size);
    if (compress2(out.data(), &size, payload.data(), payload.size(), level) != Z_OK) {
        std::fprintf(stderr, "zlib failed\n");
        std::exit(1);
    }
    return size;
}

} // namespace

int main(int argc, char** argv) {
    const std::string root = argc > 1 ? argv[1] : "/usr";
    constexpr int runs = 5;

    std::optional<dorvik::ScanResult> scan;
    const double scanning =
        bestMilliseconds(runs, [&] { scan = dorvik::Scanner().scan(root, {}, {}); });
    if (!scan) {
        std::fprintf(stderr, "cannot scan %s\n", root.c_str());
        return 1;
    }
    const auto target = dorvik::ScanTarget::folder(root);
    const std::string path = "/tmp/archive-bench-" + std::to_string(getpid()) + ".dvscan";
    const double writing =
        bestMilliseconds(runs, [&] { dorvik::ScanArchive::write(*scan, target, path); });
    std::optional<dorvik::ScanArchive::ArchivedScan> archived;
    const double reading =
        bestMilliseconds(runs, [&] { archived = dorvik::ScanArchive::read(path); });
    std::remove(path.c_str());
    if (!archived || archived->scan.files.size() != scan->files.size()) {
        std::fprintf(stderr, "the archive did not read back\n");
        return 1;
    }

    std::vector<uint8_t> payload;
    const double encoding = bestMilliseconds(
        runs, [&] { payload = dorvik::ScanArchive::encodePayload(*scan, target); });
    const size_t lzfse = dorvik::Lzfse::encode(payload).size();
    const auto ratio = [&](size_t compressed) {
        return static_cast<double>(payload.size()) / static_cast<double>(compressed);
    };
    std::printf("%s: %lld folders, %zu large files; best of %d runs\n", root.c_str(),
                static_cast<long long>(scan->totalDirectories), scan->files.size(), runs);
    std::printf("  scan           %9.1f ms\n", scanning);
    std::printf("  write archive  %9.1f ms  %5.1f%% of the scan\n", writing,
                100 * writing / scanning);
    std::printf("    encoding     %9.1f ms  the part done on the main thread\n", encoding);
    std::printf("  read archive   %9.1f ms  %5.1f%% of the scan\n", reading,
                100 * reading / scanning);
    std::printf("  payload %zu bytes: LZFSE %zu (ratio %.2f), zlib -1 %zu (%.2f), zlib -6 %zu "
                "(%.2f)\n",
                payload.size(), lzfse, ratio(lzfse), zlibSize(payload, 1),
                ratio(zlibSize(payload, 1)), zlibSize(payload, 6), ratio(zlibSize(payload, 6)));
    return 0;
}
