#include "platform/RunningApplications.h"

#include "base/KeyFile.h"
#include "platform/Bundle.h"
#include "platform/FileIO.h"
#include "platform/FileSystem.h"

#include <algorithm>
#include <limits.h>
#include <set>
#include <unistd.h>

namespace dorvik::platform {

namespace {

std::optional<std::string> executableOfProcess(const std::string& processFolder) {
    char target[PATH_MAX];
    const ssize_t length = readlink((processFolder + "/exe").c_str(), target, sizeof target);
    if (length <= 0 || static_cast<size_t>(length) >= sizeof target) {
        return std::nullopt;
    }
    return std::string(target, static_cast<size_t>(length));
}

bool isProcessNumber(const std::string& name) {
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char ch) { return ch >= '0' && ch <= '9'; });
}

// Every process in a Flatpak sandbox sees the sandbox's description at /.flatpak-info, and the
// application's identifier stands in it. Cgroup names carry the identifier only where a systemd
// user session made a scope for the app, so they are not asked.
std::optional<std::string> flatpakAppOfProcess(const std::string& processFolder) {
    constexpr size_t largestInfo = 64 * 1024;
    const auto bytes = readWholeFile(processFolder + "/root/.flatpak-info", largestInfo);
    if (!bytes) {
        return std::nullopt;
    }
    const KeyFile info =
        parseKeyFile(std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()));
    auto name = info.value("Application", "name");
    return name && !name->empty() ? name : std::nullopt;
}

} // namespace

std::optional<std::string> bundleOfExecutable(std::string_view executablePath) {
    constexpr std::string_view executableFolder = ".app/Contents/MacOS/";
    const size_t found = executablePath.rfind(executableFolder);
    // "/.app" at the very start has no name before its extension.
    if (found == std::string_view::npos || found == 0 || executablePath[found - 1] == '/' ||
        found + executableFolder.size() == executablePath.size()) {
        return std::nullopt;
    }
    return std::string(executablePath.substr(0, found + std::string_view(".app").size()));
}

std::vector<std::string> runningApplicationIdentifiers() {
    std::set<std::string> bundles;
    std::set<std::string> identifiers;
    for (const std::string& name : directoryEntries("/proc").value_or(std::vector<std::string>{})) {
        if (!isProcessNumber(name)) {
            continue;
        }
        const std::string processFolder = "/proc/" + name;
        if (const auto executable = executableOfProcess(processFolder)) {
            if (auto bundle = bundleOfExecutable(*executable)) {
                bundles.insert(std::move(*bundle));
            }
        }
        if (auto flatpakApp = flatpakAppOfProcess(processFolder)) {
            identifiers.insert(std::move(*flatpakApp));
        }
    }
    for (const std::string& bundle : bundles) {
        if (auto identifier = bundleIdentifier(bundle)) {
            identifiers.insert(std::move(*identifier));
        }
    }
    return {identifiers.begin(), identifiers.end()};
}

} // namespace dorvik::platform
