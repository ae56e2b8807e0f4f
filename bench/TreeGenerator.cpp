#include "TreeGenerator.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dorvik::bench {

namespace {

// splitmix64: the standard library's distributions differ between implementations.
class Random {
public:
    explicit Random(uint64_t seed) : state_(seed) {}
    uint64_t next() {
        uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    uint64_t below(uint64_t bound) { return next() % bound; }
    bool chance(uint64_t perThousand) { return below(1000) < perThousand; }

private:
    uint64_t state_;
};

constexpr std::array<std::string_view, 24> extensions = {
    ".txt", ".jpg", ".png",  ".mp4", ".mp3",   ".zip", ".dmg",  ".cpp",
    ".h",   ".js",  ".json", ".pdf", ".md",    ".py",  ".o",    ".log",
    "",     ".gz",  ".heic", ".mov", ".plist", ".db",  ".html", ".swift",
};

constexpr std::array<std::string_view, 12> folderNames = {
    "src", "node_modules", "Library", "Caches", "Documents", "build",
    "lib", "assets",       "data",    "cache",  "Photos",    "go",
};

void check(bool ok, const std::string& what) {
    if (!ok) {
        throw std::runtime_error(what + ": " + std::strerror(errno));
    }
}

void writeBytes(const std::string& path, size_t bytes) {
    static const std::vector<char> chunk(1 << 16, 'd');
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    check(fd >= 0, "open " + path);
    while (bytes > 0) {
        const size_t piece = std::min(bytes, chunk.size());
        check(write(fd, chunk.data(), piece) == static_cast<ssize_t>(piece), "write " + path);
        bytes -= piece;
    }
    close(fd);
}

// Blocks allocated without writing them: large files cost no time to make.
void allocateBytes(const std::string& path, off_t bytes) {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    check(fd >= 0, "open " + path);
    check(posix_fallocate(fd, 0, bytes) == 0, "fallocate " + path);
    close(fd);
}

void sparseFile(const std::string& path, off_t length) {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    check(fd >= 0, "open " + path);
    check(ftruncate(fd, length) == 0, "ftruncate " + path);
    check(pwrite(fd, "x", 1, length / 2) == 1, "pwrite " + path);
    close(fd);
}

} // namespace

GeneratedTree generateTree(const std::string& root, int64_t entries, uint64_t seed) {
    Random random(seed);
    GeneratedTree made;
    std::vector<std::string> folders{root};
    std::vector<std::string> regularFiles;
    int64_t serial = 0;
    while (made.folders + made.files < entries) {
        const std::string& parent = folders[random.below(folders.size())];
        const std::string stem = std::to_string(serial++);
        const uint64_t roll = random.below(1000);
        if (roll < 80) {
            // One folder in twelve-and-a-half; some chains go deep.
            std::string path =
                parent + "/" + std::string(folderNames[random.below(folderNames.size())]) + stem;
            check(mkdir(path.c_str(), 0755) == 0, "mkdir " + path);
            folders.push_back(path);
            ++made.folders;
            if (random.chance(50)) {
                for (int depth = 0; depth < 12 && made.folders + made.files < entries; ++depth) {
                    path += "/d" + std::to_string(depth);
                    check(mkdir(path.c_str(), 0755) == 0, "mkdir " + path);
                    ++made.folders;
                }
                folders.push_back(path);
            }
            continue;
        }
        const std::string path =
            parent + "/f" + stem + std::string(extensions[random.below(extensions.size())]);
        if (roll < 100 && !regularFiles.empty()) {
            const std::string& existing = regularFiles[random.below(regularFiles.size())];
            check(link(existing.c_str(), path.c_str()) == 0, "link " + path);
            ++made.hardLinks;
        } else if (roll < 115) {
            const std::string target = random.chance(300)     ? root + "/nowhere"
                                       : regularFiles.empty() ? parent
                                                              : regularFiles.back();
            check(symlink(target.c_str(), path.c_str()) == 0, "symlink " + path);
            ++made.symlinks;
        } else if (roll < 118) {
            allocateBytes(path, static_cast<off_t>(512 * 1024 + random.below(4 << 20)));
            regularFiles.push_back(path);
        } else if (roll < 120) {
            sparseFile(path, static_cast<off_t>(1) << (28 + random.below(6)));
            regularFiles.push_back(path);
        } else {
            // Most files are small, many of them empty or under a block.
            const uint64_t size = random.chance(200)   ? 0
                                  : random.chance(700) ? random.below(4096)
                                                       : random.below(200 * 1024);
            writeBytes(path, size);
            regularFiles.push_back(path);
        }
        ++made.files;
    }
    return made;
}

} // namespace dorvik::bench
