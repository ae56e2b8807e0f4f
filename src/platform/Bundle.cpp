#include "platform/Bundle.h"

#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/PropertyList.h"

namespace dorvik::platform {

namespace {

// Real Info.plist files are a few kilobytes; anything far larger is not one.
constexpr size_t largestInfoPlist = 4 * 1024 * 1024;

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

} // namespace dorvik::platform
