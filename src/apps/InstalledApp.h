#pragma once

// An installed application with the data it keeps outside its bundle.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace dorvik {

// Something outside an application's bundle that belongs to it.
struct RelatedItem {
    std::string path;
    std::string label; // the short name of the Library location it lies in
    int64_t size = 0;  // allocated bytes

    bool operator==(const RelatedItem&) const = default;
};

struct InstalledApp {
    std::string path; // the bundle; the row's identity
    std::string name;
    std::optional<std::string> bundleID;
    std::optional<std::string> version;
    int64_t appSize = 0;              // allocated bytes of the bundle
    std::vector<RelatedItem> related; // largest first
    std::optional<double> lastUsed;   // seconds since 1970
    bool isApple = false;
    bool isAppStore = false;

    int64_t relatedSize() const;
    int64_t totalSize() const { return appSize + relatedSize(); }

    bool operator==(const InstalledApp&) const = default;
};

// True when the application's identifier is among those of the applications running now (asked
// afresh by the caller each time).
bool isRunning(const InstalledApp& app, const std::vector<std::string>& runningIdentifiers);

// An application that went away, with what it left behind.
struct RemovedApp {
    std::string name;
    std::string bundleID;
    std::vector<RelatedItem> items; // largest first

    int64_t itemsSize() const;

    bool operator==(const RemovedApp&) const = default;
};

} // namespace dorvik
