#include "trends/TrendFiles.h"

#include "base/Dates.h"
#include "base/Uuid.h"
#include "platform/JsonCoding.h"

namespace dorvik::TrendFiles {

namespace {

using nlohmann::json;
using platform::JsonCoding::compactText;
using platform::JsonCoding::escapedPath;
using platform::JsonCoding::int64Value;
using platform::JsonCoding::member;
using platform::JsonCoding::unescapedPath;

// A snapshot: its object, six members, some room for members added later, its buckets (one per
// storage bucket) and its folders. A sample: its object and three numbers, with the same room.
constexpr platform::JsonCoding::ArrayLimits snapshotLimits{
    maximumSnapshots, 1 + 6 + 8 + 64 + 2 + snapshotFolderLimit, 3};
constexpr platform::JsonCoding::ArrayLimits sampleLimits{maximumSamples, 1 + 3 + 8, 2};

std::optional<double> dateValue(const json* value) {
    const auto seconds = platform::JsonCoding::finiteNumber(value);
    if (!seconds) {
        return std::nullopt;
    }
    return Dates::fromReferenceDate(*seconds);
}

std::optional<std::map<std::string, int64_t>> sizeMap(const json* value, bool keysArePaths) {
    if (value == nullptr || !value->is_object()) {
        return std::nullopt;
    }
    std::map<std::string, int64_t> sizes;
    for (const auto& [key, bytes] : value->items()) {
        const auto parsed = int64Value(&bytes);
        if (!parsed) {
            return std::nullopt;
        }
        sizes[keysArePaths ? unescapedPath(key) : key] = *parsed;
    }
    return sizes;
}

std::optional<ScanSnapshot> decodeSnapshot(const json& object) {
    if (!object.is_object()) {
        return std::nullopt;
    }
    const json* id = member(object, "id");
    const json* root = member(object, "root");
    if (id == nullptr || !id->is_string() || root == nullptr || !root->is_string()) {
        return std::nullopt;
    }
    auto uuid = Uuid::parse(id->get_ref<const std::string&>());
    auto date = dateValue(member(object, "date"));
    auto total = int64Value(member(object, "total"));
    auto buckets = sizeMap(member(object, "buckets"), false);
    auto folders = sizeMap(member(object, "folders"), true);
    if (!uuid || !date || !total || !buckets || !folders || folders->size() > snapshotFolderLimit) {
        return std::nullopt;
    }
    return ScanSnapshot{std::move(*uuid),
                        *date,
                        unescapedPath(root->get_ref<const std::string&>()),
                        *total,
                        std::move(*buckets),
                        std::move(*folders)};
}

std::optional<SpaceSample> decodeSample(const json& object) {
    if (!object.is_object()) {
        return std::nullopt;
    }
    const auto date = dateValue(member(object, "date"));
    const auto used = int64Value(member(object, "used"));
    const auto total = int64Value(member(object, "total"));
    if (!date || !used || !total) {
        return std::nullopt;
    }
    return SpaceSample{*date, *used, *total};
}

} // namespace

std::string encodeSnapshots(const std::vector<ScanSnapshot>& snapshots) {
    json document = json::array();
    for (const ScanSnapshot& snapshot : snapshots) {
        json folders = json::object();
        for (const auto& [path, bytes] : snapshot.folders) {
            folders[escapedPath(path)] = bytes;
        }
        document.push_back({
            {"id", snapshot.id},
            {"date", Dates::toReferenceDate(snapshot.date)},
            {"root", escapedPath(snapshot.root)},
            {"total", snapshot.total},
            {"buckets", snapshot.buckets},
            {"folders", std::move(folders)},
        });
    }
    return compactText(document);
}

std::optional<std::vector<ScanSnapshot>> decodeSnapshots(std::string_view text) {
    return platform::JsonCoding::decodeArray<ScanSnapshot>(text, decodeSnapshot, snapshotLimits);
}

std::string encodeSamples(const std::vector<SpaceSample>& samples) {
    json document = json::array();
    for (const SpaceSample& sample : samples) {
        document.push_back({
            {"date", Dates::toReferenceDate(sample.date)},
            {"used", sample.used},
            {"total", sample.total},
        });
    }
    return compactText(document);
}

std::optional<std::vector<SpaceSample>> decodeSamples(std::string_view text) {
    return platform::JsonCoding::decodeArray<SpaceSample>(text, decodeSample, sampleLimits);
}

} // namespace dorvik::TrendFiles
