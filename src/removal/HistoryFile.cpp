#include "removal/HistoryFile.h"

#include "platform/JsonCoding.h"
#include "system/Dates.h"
#include "system/Uuid.h"

namespace dorvik::HistoryFile {

namespace {

using nlohmann::json;
using platform::JsonCoding::member;

std::optional<HistoryEntry> decodeEntry(const json& object) {
    if (!object.is_object()) {
        return std::nullopt;
    }
    const json* id = member(object, "id");
    const json* originalPath = member(object, "originalPath");
    const json* trashPath = member(object, "trashPath");
    const json* restored = member(object, "restored");
    if (id == nullptr || !id->is_string() || originalPath == nullptr ||
        !originalPath->is_string() || restored == nullptr || !restored->is_boolean() ||
        (trashPath != nullptr && !trashPath->is_string() && !trashPath->is_null())) {
        return std::nullopt;
    }
    auto uuid = Uuid::parse(id->get_ref<const std::string&>());
    const auto date = platform::JsonCoding::finiteNumber(member(object, "date"));
    const auto size = platform::JsonCoding::int64Value(member(object, "size"));
    if (!uuid || !date || !size) {
        return std::nullopt;
    }
    HistoryEntry entry{std::move(*uuid),
                       Dates::fromReferenceDate(*date),
                       platform::JsonCoding::unescapedPath(originalPath->get<std::string>()),
                       std::nullopt,
                       *size,
                       restored->get<bool>()};
    if (trashPath != nullptr && trashPath->is_string()) {
        entry.trashPath = platform::JsonCoding::unescapedPath(trashPath->get<std::string>());
    }
    return entry;
}

} // namespace

std::string encode(const std::vector<HistoryEntry>& entries) {
    json document = json::array();
    for (const HistoryEntry& entry : entries) {
        json object = {
            {"id", entry.id},
            {"date", Dates::toReferenceDate(entry.date)},
            {"originalPath", platform::JsonCoding::escapedPath(entry.originalPath)},
            {"size", entry.size},
            {"restored", entry.restored},
        };
        if (entry.trashPath) {
            object["trashPath"] = platform::JsonCoding::escapedPath(*entry.trashPath);
        }
        document.push_back(std::move(object));
    }
    return platform::JsonCoding::compactText(document);
}

std::optional<std::vector<HistoryEntry>> decode(std::string_view text) {
    return platform::JsonCoding::decodeArray<HistoryEntry>(text, decodeEntry);
}

} // namespace dorvik::HistoryFile
