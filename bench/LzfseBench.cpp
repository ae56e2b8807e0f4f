// Measures the LZFSE codec on a scan-archive-like payload against zlib at level 1, the fast
// setting a user of a general-purpose library would pick: compressed size and time, side by side.
//
//   lzfse_bench [folder...]    (default /usr)
//
// The payload is what an archive of the scan holds: for every directory and large file, its
// name and its numbers as little-endian fields, depth first.

#include "platform/Lzfse.h"
#include "scanning/Scanner.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <zlib.h>

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

template <typename T> void appendField(std::vector<uint8_t>& out, T value) {
    uint8_t bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T)); // the machines we build on are little-endian
    out.insert(out.end(), bytes, bytes + sizeof(T));
}

void appendNode(const dorvik::FileNode& node, std::vector<uint8_t>& out) {
    appendField(out, static_cast<uint16_t>(node.name.size()));
    out.insert(out.end(), node.name.begin(), node.name.end());
    appendField(out, static_cast<uint8_t>(node.isDirectory | node.isPackage << 1));
    appendField(out, static_cast<uint8_t>(node.kind));
    appendField(out, node.size);
    appendField(out, node.logicalSize);
    appendField(out, node.fileCount);
    appendField(out, node.modified);
    appendField(out, node.accessed);
    appendField(out, node.smallFilesSize);
    appendField(out, node.smallFilesCount);
    appendField(out, static_cast<uint32_t>(node.children.size()));
    for (const auto& child : node.children) {
        appendNode(*child, out);
    }
}

struct Measure {
    size_t bytes = 0;
    double milliseconds = 0;
};

template <typename Run> Measure bestOf(int runs, Run run) {
    Measure best{0, 1e300};
    for (int i = 0; i < runs; ++i) {
        const auto start = Clock::now();
        const size_t bytes = run();
        best = {bytes, std::min(best.milliseconds, millisecondsSince(start))};
    }
    return best;
}

void report(const char* name, size_t payload, Measure measure) {
    std::printf("  %-14s %11zu bytes  ratio %5.2f  %8.1f ms  %7.1f MB/s\n", name, measure.bytes,
                static_cast<double>(payload) / static_cast<double>(measure.bytes),
                measure.milliseconds, static_cast<double>(payload) / 1e3 / measure.milliseconds);
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> roots;
    for (int i = 1; i < argc; ++i) {
        roots.emplace_back(argv[i]);
    }
    if (roots.empty()) {
        roots.emplace_back("/usr");
    }
    std::vector<uint8_t> payload;
    for (const auto& root : roots) {
        dorvik::Scanner scanner;
        const auto result = scanner.scan(root, {}, {});
        if (!result) {
            std::fprintf(stderr, "cannot scan %s\n", root.c_str());
            return 1;
        }
        appendNode(*result->root, payload);
    }
    std::printf("payload of %zu bytes from %zu folder(s)\n", payload.size(), roots.size());
    constexpr int runs = 3;

    std::vector<uint8_t> encoded;
    const Measure lzfse = bestOf(runs, [&] {
        encoded = dorvik::platform::Lzfse::encode(payload);
        return encoded.size();
    });
    std::optional<std::vector<uint8_t>> decoded;
    const Measure lzfseDecode = bestOf(runs, [&] {
        decoded = dorvik::platform::Lzfse::decode(encoded, payload.size());
        return encoded.size();
    });
    if (!decoded || *decoded != payload) {
        std::fprintf(stderr, "LZFSE round trip failed\n");
        return 1;
    }

    const auto zlibAt = [&payload](int level) {
        return [&payload, level] {
            uLongf size = compressBound(payload.size());
            std::vector<uint8_t> out(size);
            if (compress2(out.data(), &size, payload.data(), payload.size(), level) != Z_OK) {
                std::fprintf(stderr, "zlib failed\n");
                std::exit(1);
            }
            return static_cast<size_t>(size);
        };
    };
    report("lzfse encode", payload.size(), lzfse);
    report("lzfse decode", payload.size(), lzfseDecode);
    report("zlib -1", payload.size(), bestOf(runs, zlibAt(1)));
    report("zlib -6", payload.size(), bestOf(runs, zlibAt(6)));
    return 0;
}
