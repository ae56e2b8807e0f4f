#include "scanning/StorageBucket.h"

namespace dorvik {

namespace {

constexpr std::array<StorageBucketInfo, allStorageBuckets.size()> bucketInfos = {{
    {"applications", "Applications", ".app bundles in Applications and other folders.",
     "square.grid.2x2.fill", "#5B8CFF"},
    {"documents", "Documents", "PDFs, office files, text and data.", "doc.text.fill", "#34C3A0"},
    {"images", "Images & Photos", "Photos, the Photos library and design files.",
     "photo.on.rectangle.angled", "#F5B83D"},
    {"video", "Video", "Movies, recordings and video projects.", "film.stack.fill", "#FF6B8A"},
    {"audio", "Music & Audio", "Music, podcasts and sound libraries.", "music.note", "#B57BFF"},
    {"archives", "Installers & Archives",
     "DMG, PKG, ZIP\u2026 usually safe to delete after installing.", "shippingbox.fill", "#FF9F43"},
    {"developer", "Developer", "Xcode, simulators, node_modules, Docker and package caches.",
     "hammer.fill", "#3DD6F5"},
    {"appData", "App Data", "What apps store in ~/Library: databases, settings, containers.",
     "tray.full.fill", "#8E9AAF"},
    {"junk", "Caches & Temporary Files",
     "Caches, logs and temporary files. macOS and apps recreate them.", "sparkles", "#7BE07B"},
    {"trash", "Trash", "Items already in the Trash.", "trash.fill", "#C9A27E"},
    {"system", "System", "macOS files and shared components outside the sealed volume.",
     "gearshape.2.fill", "#4A5068"},
    {"other", "Other", "Everything that doesn\u2019t fit another category.", "ellipsis.circle.fill",
     "#A0A4B0"},
}};

} // namespace

const StorageBucketInfo& info(StorageBucket bucket) {
    return bucketInfos[static_cast<size_t>(bucket)];
}

std::optional<StorageBucket> storageBucketFromRaw(uint8_t raw) {
    if (raw >= allStorageBuckets.size()) {
        return std::nullopt;
    }
    return static_cast<StorageBucket>(raw);
}

std::optional<StorageBucket> storageBucketFromCaseName(std::string_view name) {
    for (StorageBucket bucket : allStorageBuckets) {
        if (info(bucket).caseName == name) {
            return bucket;
        }
    }
    return std::nullopt;
}

} // namespace dorvik
