#include "trends/TrendFiles.h"

#include "platform/JsonCoding.h"
#include "system/Dates.h"
#include "system/Uuid.h"

namespace dorvik::TrendFiles {

namespace {

using nlohmann::json;
using platform::JsonCoding::compactText;
using platform::JsonCoding::int64Value;
using platform::JsonCoding::member;

std::optional<double> dateValue(const json* value) {
    const auto seconds = platform::JsonCoding::finiteNumber(value);
    if (!seconds) {
        return std::nullopt;
    }
    return Dates::fromReferenceDate(*seconds);
}

std::optional<std::map<std::string, int64_t>> sizeMap(const json* value) {
    if (value == nullptr || !value->is_object()) {
        return std::nullopt;
    }
    std::map<std::string, int64_t> sizes;
    for (const auto& [key, bytes] : value->items()) {
        const auto parsed = int64Value(&bytes);
        if (!parsed) {
            return std::nullopt;
        }
        sizes[key] = *parsed;
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
    auto buckets = sizeMap(member(object, "buckets"));
    auto folders = sizeMap(member(object, "folders"));
    if (!uuid || !date || !total || !buckets || !folders) {
        return std::nullopt;
    }
    return ScanSnapshot{std::move(*uuid),         *date,
                        root->get<std::string>(), *total,
                        std::move(*buckets),      std::move(*folders)};
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
        document.push_back({
            {"id", snapshot.id},
            {"date", Dates::toReferenceDate(snapshot.date)},
            {"root", snapshot.root},
            {"total", snapshot.total},
            {"buckets", snapshot.buckets},
            {"folders", snapshot.folders},
        });
    }
    return compactText(document);
}

std::optional<std::vector<ScanSnapshot>> decodeSnapshots(std::string_view text) {
    return platform::JsonCoding::decodeArray<ScanSnapshot>(text, decodeSnapshot);
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
    return platform::JsonCoding::decodeArray<SpaceSample>(text, decodeSample);
}

} // namespace dorvik::TrendFiles
