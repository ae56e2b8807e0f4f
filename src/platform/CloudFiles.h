#pragma once

// What iCloud knows of one file kept in it: whether its content is downloaded, whether all of it
// has reached the cloud, and giving back the download while the file stays. Linux has no iCloud:
// a file's status is never known here and no download can be given back, so only what a file's
// own status says (its kind, its length, its allocated blocks) is ever filled in.

#include "platform/WalkFolder.h"

#include <cstdint>
#include <optional>
#include <string>

namespace dorvik::platform {

enum class CloudDownloadStatus : uint8_t { notDownloaded, downloaded, current };

struct CloudFileFacts {
    bool isRegularFile = false;
    std::optional<int64_t> logicalSize;
    std::optional<int64_t> allocatedSize;
    std::optional<CloudDownloadStatus> downloadStatus; // never known on Linux
    std::optional<bool> isUploaded;                    // never known on Linux
};

// The facts of an entry a walk met, from its status.
CloudFileFacts cloudFileFacts(const WalkStat& status);

inline constexpr std::string_view evictionUnavailableMessage =
    "iCloud isn\u2019t available on this computer, so the download can\u2019t be removed.";

// Gives back the downloaded content of the file at `path`, keeping it in the cloud. None on
// success, else the reason. On Linux it always fails with evictionUnavailableMessage.
std::optional<std::string> evictDownload(const std::string& path);

} // namespace dorvik::platform
