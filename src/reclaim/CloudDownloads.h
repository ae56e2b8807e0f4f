#pragma once

// The downloaded copies of files kept in iCloud: read from "~/Library/Mobile Documents" into one
// report, folder by folder, with what is downloaded and what lies only in the cloud; and the
// downloads given back (evicted) while the files stay in the cloud. Nothing here deletes a file.
// On Linux there is no such folder and no eviction (platform/CloudFiles.h): the report says iCloud
// is not in use, and every rule that does not depend on iCloud's own status holds as on a Mac.

#include "platform/CloudFiles.h"
#include "removal/DeletionRequest.h"
#include "removal/Toast.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

struct CloudItem {
    std::string path;
    std::string name;
    int64_t size = 0; // allocated bytes here
    bool isUploaded = false;

    bool operator==(const CloudItem&) const = default;
};

struct CloudFolder {
    std::string path;
    std::string title;
    bool isApp = false; // an application's container, not a folder of iCloud Drive
    int64_t localSize = 0;
    int64_t cloudOnlySize = 0;
    int64_t cloudOnlyCount = 0;
    std::vector<CloudItem> items; // downloads of 1,000,000 bytes and more, largest first

    bool operator==(const CloudFolder&) const = default;
};

struct CloudReport {
    std::vector<CloudFolder> folders; // largest localSize first
    bool isAvailable = false;

    bool operator==(const CloudReport&) const = default;
};

struct EvictionReport {
    int64_t freed = 0;
    std::vector<std::string> evicted;
    std::vector<DeletionFailure> failures;
};

// The smallest download that gets a row of its own.
inline constexpr int64_t smallestListedDownload = 1'000'000;

inline constexpr std::string_view iCloudDriveContainer = "com~apple~CloudDocs";
inline constexpr std::string_view topOfDriveTitle = "Files at the top of iCloud Drive";
inline constexpr std::string_view notUploadedReason = "Not uploaded to iCloud yet.";

// Counts one entry into `folder`: a placeholder ".name.icloud", a download, a file that is only
// in the cloud, or nothing (".DS_Store", folders, links, entries whose facts are unknown).
void countCloudEntry(CloudFolder& folder, const std::string& path, std::string_view name,
                     const std::optional<platform::CloudFileFacts>& facts);

// Finds the application with a bundle identifier; AppInventory::applicationWithIdentifier in
// the program.
using ApplicationFinder = std::function<std::optional<std::string>(std::string_view identifier)>;

// What the page calls an application's container: "iCloud~com~example~Writer" and
// "ABCDE12345~com~example~Writer" are the application "com.example.Writer"'s display name when it
// is installed, else "Writer".
std::string cloudContainerTitle(std::string_view name, const ApplicationFinder& findApplication);

// The report over `home`/Library/Mobile Documents. Walks the disk: call it off the main thread.
CloudReport buildCloudReport(const std::string& home, const ApplicationFinder& findApplication);
CloudReport buildCloudReport();

// Gives back the downloads of `items` one by one through `evict` (platform::evictDownload in the
// program); one not uploaded yet is kept, as it is the only complete copy.
using Evictor = std::function<std::optional<std::string>(const std::string& path)>;
EvictionReport evictDownloads(const std::vector<CloudItem>& items, const Evictor& evict);

// The message after downloads were given back. Nothing went to the Trash: nothing to undo.
Toast evictionToast(const EvictionReport& report);

} // namespace dorvik
