// dorvik-make-duplicate-corpus: a deterministic folder of files for the duplicate benchmark.
//
//   dorvik-make-duplicate-corpus DIR [--seed N] [--gigabytes G]
//
// Files of 1 to 50 MiB whose lengths come from a small pool, so that many share a length; a third
// of them copied once or twice; some near copies that differ in one byte within the first 64 KiB
// and some only in their last byte; a few hard links; and small files under 1 MiB, many of them
// identical, that a search from 1 MiB must never read. The same seed makes the same folder.

#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int64_t mebibyte = 1048576;

// xorshift64*: fast, and the same sequence on every machine.
struct Random {
    uint64_t state;
    uint64_t next() {
        state ^= state >> 12;
        state ^= state << 25;
        state ^= state >> 27;
        return state * 2685821657736338717ull;
    }
    int64_t below(int64_t bound) {
        return static_cast<int64_t>(next() % static_cast<uint64_t>(bound));
    }
};

// The content of a file: `length` bytes from the seed `content`, with the byte at `flipAt`
// changed when it is not negative.
void writeFile(const std::string& path, int64_t length, uint64_t content, int64_t flipAt = -1) {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) {
        std::perror(path.c_str());
        std::exit(1);
    }
    Random random{content * 0x9E3779B97F4A7C15ull + 1};
    std::vector<uint64_t> block(static_cast<size_t>(mebibyte / 8));
    for (int64_t written = 0; written < length;) {
        for (uint64_t& word : block) {
            word = random.next();
        }
        const int64_t piece = std::min<int64_t>(mebibyte, length - written);
        auto* bytes = reinterpret_cast<unsigned char*>(block.data());
        if (flipAt >= written && flipAt < written + piece) {
            bytes[flipAt - written] ^= 0x5a;
        }
        if (write(fd, bytes, static_cast<size_t>(piece)) != piece) {
            std::perror(path.c_str());
            std::exit(1);
        }
        written += piece;
    }
    close(fd);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: dorvik-make-duplicate-corpus DIR [--seed N] [--gigabytes G]\n";
        return 2;
    }
    const std::string root = argv[1];
    uint64_t seed = 1;
    double gigabytes = 5.5;
    for (int index = 2; index + 1 < argc; index += 2) {
        const std::string option = argv[index];
        if (option == "--seed") {
            seed = std::stoull(argv[index + 1]);
        } else if (option == "--gigabytes") {
            gigabytes = std::stod(argv[index + 1]);
        }
    }
    Random random{seed * 0x2545F4914F6CDD1Dull + 7};
    std::vector<int64_t> lengths;
    for (int index = 0; index < 40; ++index) {
        lengths.push_back(mebibyte + random.below(49 * mebibyte));
    }

    const auto budget = static_cast<int64_t>(gigabytes * 1e9);
    int64_t total = 0;
    uint64_t content = seed * 1000003;
    int files = 0;
    const auto place = [&](const std::string& kind) {
        const std::string folder = root + "/" + kind + std::to_string(files % 16);
        std::filesystem::create_directories(folder);
        return folder + "/f" + std::to_string(files++) + ".bin";
    };
    std::vector<std::string> originals;
    while (total < budget) {
        const int64_t length = lengths[static_cast<size_t>(random.below(40))];
        const std::string original = place("set");
        writeFile(original, length, ++content);
        total += length;
        originals.push_back(original);
        const int64_t choice = random.below(30);
        if (choice < 10) { // a third: copied once or twice
            for (int64_t copy = 0; copy <= random.below(2); ++copy) {
                writeFile(place("copies"), length, content);
                total += length;
            }
        } else if (choice < 13) { // differs in one byte of the head
            writeFile(place("near"), length, content, random.below(65536));
            total += length;
        } else if (choice < 16) { // differs only in the last byte
            writeFile(place("near"), length, content, length - 1);
            total += length;
        }
    }
    for (size_t index = 0; index < originals.size(); index += originals.size() / 5 + 1) {
        std::filesystem::create_hard_link(originals[index], originals[index] + ".link");
    }
    // Small files: pairs of equal ones and single ones, all below 1 MiB.
    for (int index = 0; index < 400; ++index) {
        const int64_t length = 1 + random.below(mebibyte - 1);
        const std::string folder = root + "/small" + std::to_string(index % 8);
        std::filesystem::create_directories(folder);
        writeFile(folder + "/s" + std::to_string(index) + ".bin", length, ++content);
        if (index % 2 == 0) {
            writeFile(folder + "/s" + std::to_string(index) + "-copy.bin", length, content);
        }
        total += length;
    }
    std::cout << files << " large files, " << total << " bytes in " << root << "\n";
    return 0;
}
