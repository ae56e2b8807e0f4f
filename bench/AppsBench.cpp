// Measures loading the installed applications as the Applications page loads them: every bundle
// found, its Info.plist read, the bundle and each item of the Library that belongs to it
// measured, all on the machine's threads. Warm: the tree is read once before the timed runs.
//
//   apps_bench [DORVIK_CLI]
//
// It makes a Mac-like home and system root in a temporary folder (removed at the end), points
// HOME and DORVIK_SYSTEM_ROOT at them, and times AppInventory::loadAll; given the dorvik-cli
// binary, it times `dorvik-cli apps --json` on the same tree too, start and printing included.
//
// The tree: 200 bundles of 120 files each, half in /Applications (some in vendor folders), the
// rest in ~/Applications and /Applications/Utilities; 2,000 entries in the twelve Library
// locations, 1,000 of them belonging to the bundles (folders of 10 files, or single files) and
// 1,000 to no installed application.

#include "apps/AppInventory.h"
#include "scanning/WalkThreads.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace dorvik;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr int bundles = 200;
constexpr int filesPerBundle = 120;
constexpr int strangerEntries = 1000;

void writeBytes(const fs::path& path, size_t bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary);
    const std::string block(std::min<size_t>(bytes, 4096), 'x');
    for (size_t written = 0; written < bytes; written += block.size()) {
        out.write(block.data(),
                  static_cast<std::streamsize>(std::min(block.size(), bytes - written)));
    }
}

void writeInfoPlist(const fs::path& bundle, const std::string& identifier,
                    const std::string& name) {
    fs::create_directories(bundle / "Contents");
    std::ofstream(bundle / "Contents/Info.plist")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\"><dict>\n"
        << "<key>CFBundleIdentifier</key><string>" << identifier << "</string>\n"
        << "<key>CFBundleName</key><string>" << name << "</string>\n"
        << "<key>CFBundleShortVersionString</key><string>1.0</string>\n"
        << "<key>CFBundleExecutable</key><string>" << name << "</string>\n"
        << "</dict></plist>\n";
}

fs::path bundlePath(const fs::path& system, const fs::path& home, int index,
                    const std::string& name) {
    switch (index % 4) {
    case 0:
        return system / "Applications" / (name + ".app");
    case 1:
        return system / "Applications" / ("Vendor" + std::to_string(index % 10)) / (name + ".app");
    case 2:
        return home / "Applications" / (name + ".app");
    default:
        return system / "Applications/Utilities" / (name + ".app");
    }
}

void makeBundle(const fs::path& bundle, const std::string& identifier, const std::string& name) {
    writeInfoPlist(bundle, identifier, name);
    writeBytes(bundle / "Contents/MacOS" / name, 200'000);
    for (int file = 1; file < filesPerBundle; ++file) {
        writeBytes(bundle / "Contents/Resources" / ("part" + std::to_string(file % 8)) /
                       ("file" + std::to_string(file)),
                   static_cast<size_t>(1000 + file * 37));
    }
}

void makeTree(const fs::path& system, const fs::path& home) {
    const fs::path library = home / "Library";
    for (int index = 0; index < bundles; ++index) {
        const std::string name = "App" + std::to_string(index);
        const std::string identifier = "com.example.app" + std::to_string(index);
        makeBundle(bundlePath(system, home, index, name), identifier, name);
        const fs::path folders[] = {library / "Application Support" / identifier,
                                    library / "Caches" / identifier,
                                    library / "Containers" / identifier, library / "Logs" / name};
        for (const fs::path& folder : folders) {
            for (int file = 0; file < 10; ++file) {
                writeBytes(folder / ("data" + std::to_string(file)), 5000);
            }
        }
        writeBytes(library / "Preferences" / (identifier + ".plist"), 2000);
    }
    const char* locations[] = {"Application Support",     "Caches",       "Preferences",
                               "Saved Application State", "HTTPStorages", "WebKit"};
    for (int index = 0; index < strangerEntries; ++index) {
        writeBytes(library / locations[index % 6] / ("org.gone.tool" + std::to_string(index)) /
                       "data",
                   3000);
    }
}

double seconds(Clock::duration duration) {
    return std::chrono::duration<double>(duration).count();
}

} // namespace

int main(int argc, char** argv) {
    std::string pattern = (fs::temp_directory_path() / "dorvik-apps-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        std::perror("mkdtemp");
        return 1;
    }
    const fs::path root = pattern;
    const fs::path system = root / "system";
    const fs::path home = root / "home";
    makeTree(system, home);
    setenv("HOME", home.c_str(), 1);
    setenv("DORVIK_SYSTEM_ROOT", system.c_str(), 1);

    const size_t entries = AppInventory::libraryEntries().size();
    const int threads = machineThreads();
    std::printf("%d bundles of %d files, %zu Library entries, %d threads; warm, median and worst "
                "of %d runs\n\n",
                bundles, filesPerBundle, entries, threads, 7);
    size_t found = AppInventory::loadAll(threads).size(); // warms the caches
    std::vector<double> times;
    for (int run = 0; run < 7; ++run) {
        const auto start = Clock::now();
        found = AppInventory::loadAll(threads).size();
        times.push_back(seconds(Clock::now() - start));
    }
    std::ranges::sort(times);
    std::printf("  loadAll              %6.3f s  %6.3f s  (%zu apps)\n", times[3], times.back(),
                found);

    if (argc > 1) {
        const std::string command = std::string("'") + argv[1] + "' apps --json >/dev/null";
        std::vector<double> cliTimes;
        for (int run = 0; run < 7; ++run) {
            const auto start = Clock::now();
            if (std::system(command.c_str()) != 0) {
                std::fprintf(stderr, "%s failed\n", command.c_str());
                return 1;
            }
            cliTimes.push_back(seconds(Clock::now() - start));
        }
        std::ranges::sort(cliTimes);
        std::printf("  dorvik-cli apps --json %6.3f s  %6.3f s\n", cliTimes[3], cliTimes.back());
    }
    fs::remove_all(root);
    return 0;
}
