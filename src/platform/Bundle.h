#pragma once

// Application bundles: a folder "<Name>.app" whose Contents/Info.plist describes it. The property
// list may be XML or binary.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::platform {

// The string entries of a bundle's Contents/Info.plist; none when the path is no folder or the
// file is missing or unreadable.
std::optional<std::map<std::string, std::string>> bundleInfoStrings(const std::string& bundlePath);

// "CFBundleIdentifier" of the bundle when it is a non-empty string.
std::optional<std::string> bundleIdentifier(const std::string& bundlePath);

// The bundle identity of this program. Dorvik is no bundle here, yet it answers to this
// identifier wherever an application's identity is asked for.
inline constexpr std::string_view mainBundleIdentifier = "app.dorvik.mac";

} // namespace dorvik::platform
