#include "trends/TrendFiles.h"

#include "system/Dates.h"
#include "system/Uuid.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace dorvik::TrendFiles {

namespace {

using nlohmann::json;

// A member that must be there; none when it is missing.
const json* member(const json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &*found;
}

std::optional<int64_t> bytesValue(const json* value) {
    if (value == nullptr || !value->is_number_integer()) {
        return std::nullopt;
    }
    if (value->is_number_unsigned() &&
        value->get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
        return std::nullopt;
    }
    return value->get<int64_t>();
}

std::optional<double> dateValue(const json* value) {
    if (value == nullptr || !value->is_number() || !std::isfinite(value->get<double>())) {
        return std::nullopt;
    }
    return Dates::fromReferenceDate(value->get<double>());
}

std::optional<std::map<std::string, int64_t>> sizeMap(const json* value) {
    if (value == nullptr || !value->is_object()) {
        return std::nullopt;
    }
    std::map<std::string, int64_t> sizes;
    for (const auto& [key, bytes] : value->items()) {
        const auto parsed = bytesValue(&bytes);
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
    auto total = bytesValue(member(object, "total"));
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
    const auto used = bytesValue(member(object, "used"));
    const auto total = bytesValue(member(object, "total"));
    if (!date || !used || !total) {
        return std::nullopt;
    }
    return SpaceSample{*date, *used, *total};
}

// Every element decoded, or none when the text is no JSON array or one element fails.
template <typename Record, typename Decode>
std::optional<std::vector<Record>> decodeArray(std::string_view text, Decode decode) {
    const json document = json::parse(text, nullptr, false);
    if (!document.is_array()) {
        return std::nullopt;
    }
    std::vector<Record> records;
    records.reserve(document.size());
    for (const json& element : document) {
        auto record = decode(element);
        if (!record) {
            return std::nullopt;
        }
        records.push_back(std::move(*record));
    }
    return records;
}

std::string text(const json& document) {
    return document.dump(-1, ' ', false, json::error_handler_t::replace);
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
    return text(document);
}

std::optional<std::vector<ScanSnapshot>> decodeSnapshots(std::string_view text) {
    return decodeArray<ScanSnapshot>(text, decodeSnapshot);
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
    return text(document);
}

std::optional<std::vector<SpaceSample>> decodeSamples(std::string_view text) {
    return decodeArray<SpaceSample>(text, decodeSample);
}

} // namespace dorvik::TrendFiles
