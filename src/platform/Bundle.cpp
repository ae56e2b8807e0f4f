#include "platform/Bundle.h"

#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/PropertyList.h"

namespace dorvik::platform {

namespace {

// Real Info.plist files are a few kilobytes; anything far larger is not one.
constexpr size_t largestInfoPlist = 4 * 1024 * 1024;

bool isBundleName(const std::string& name) {
    return name.size() > 4 && name.ends_with(".app");
}

} // namespace

std::optional<std::map<std::string, std::string>> bundleInfoStrings(const std::string& bundlePath) {
    if (!isDirectory(bundlePath)) {
        return std::nullopt;
    }
    const auto bytes = readWholeFile(bundlePath + "/Contents/Info.plist", largestInfoPlist);
    if (!bytes) {
        return std::nullopt;
    }
    return propertyListStrings(*bytes);
}

std::optional<std::string> bundleIdentifier(const std::string& bundlePath) {
    const auto strings = bundleInfoStrings(bundlePath);
    if (!strings) {
        return std::nullopt;
    }
    const auto found = strings->find("CFBundleIdentifier");
    if (found == strings->end() || found->second.empty()) {
        return std::nullopt;
    }
    return found->second;
}

std::vector<std::string> applicationRoots() {
    const std::string root = systemRoot();
    return {root + "/Applications", homeDirectory() + "/Applications",
            root + "/Applications/Utilities"};
}

std::optional<std::string> applicationWithBundleIdentifier(std::string_view identifier) {
    if (identifier.empty()) {
        return std::nullopt;
    }
    const auto answers = [identifier](const std::string& bundle) {
        const auto found = bundleIdentifier(bundle);
        return found && *found == identifier;
    };
    for (const std::string& root : applicationRoots()) {
        for (const std::string& name :
             directoryEntries(root).value_or(std::vector<std::string>{})) {
            const std::string path = root + "/" + name;
            if (isBundleName(name)) {
                if (answers(path)) {
                    return path;
                }
                continue;
            }
            // "Utilities" is a root of its own.
            if (name == "Utilities" || !isDirectory(path)) {
                continue;
            }
            for (const std::string& inner :
                 directoryEntries(path).value_or(std::vector<std::string>{})) {
                if (isBundleName(inner) && answers(path + "/" + inner)) {
                    return path + "/" + inner;
                }
            }
        }
    }
    return std::nullopt;
}

} // namespace dorvik::platform
