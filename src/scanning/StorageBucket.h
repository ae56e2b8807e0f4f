#pragma once

// What the space is for, from where an item stands on disk. The raw values are stored in the scan
// archive, so the order of the cases never changes.

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace dorvik {

enum class StorageBucket : uint8_t {
    applications = 0,
    documents = 1,
    images = 2,
    video = 3,
    audio = 4,
    archives = 5,
    developer = 6,
    appData = 7,
    junk = 8,
    trash = 9,
    system = 10,
    other = 11,
};

inline constexpr std::array<StorageBucket, 12> allStorageBuckets = {
    StorageBucket::applications, StorageBucket::documents, StorageBucket::images,
    StorageBucket::video,        StorageBucket::audio,     StorageBucket::archives,
    StorageBucket::developer,    StorageBucket::appData,   StorageBucket::junk,
    StorageBucket::trash,        StorageBucket::system,    StorageBucket::other,
};

struct StorageBucketInfo {
    std::string_view caseName;
    std::string_view displayName;
    std::string_view explanation;
    std::string_view symbol;
    std::string_view colour;
};

const StorageBucketInfo& info(StorageBucket bucket);

std::optional<StorageBucket> storageBucketFromRaw(uint8_t raw);

std::optional<StorageBucket> storageBucketFromCaseName(std::string_view name);

} // namespace dorvik
