#include "removal/HistoryFile.h"

#include "base/Dates.h"
#include "base/Uuid.h"
#include "platform/JsonCoding.h"

namespace dorvik::HistoryFile {

namespace {

using nlohmann::json;
using platform::JsonCoding::escapedPath;
using platform::JsonCoding::int64Value;
using platform::JsonCoding::member;
using platform::JsonCoding::unescapedPath;

// An entry is one object of at most nine members with scalar values.
constexpr platform::JsonCoding::ArrayLimits limits{maximumEntries, 10, 2};

// The three numbers that identify a trashed item, all or none; false when they are malformed.
bool decodeIdentity(const json& object, std::optional<platform::ItemIdentity>& identity) {
    const json* device = member(object, "trashDevice");
    const json* inode = member(object, "trashInode");
    const json* size = member(object, "trashSize");
    if (device == nullptr && inode == nullptr && size == nullptr) {
        return true;
    }
    if (device == nullptr || !device->is_number_unsigned() || inode == nullptr ||
        !inode->is_number_unsigned()) {
        return false;
    }
    const auto bytes = int64Value(size);
    if (!bytes) {
        return false;
    }
    identity = platform::ItemIdentity{device->get<uint64_t>(), inode->get<uint64_t>(), *bytes};
    return true;
}

} // namespace

json encodeEntry(const HistoryEntry& entry) {
    json object = {
        {"id", entry.id},
        {"date", Dates::toReferenceDate(entry.date)},
        {"originalPath", escapedPath(entry.originalPath)},
        {"size", entry.size},
        {"restored", entry.restored},
    };
    if (entry.trashPath) {
        object["trashPath"] = escapedPath(*entry.trashPath);
    }
    if (entry.trashedItem) {
        object["trashDevice"] = entry.trashedItem->device;
        object["trashInode"] = entry.trashedItem->inode;
        object["trashSize"] = entry.trashedItem->size;
    }
    return object;
}

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
    const auto size = int64Value(member(object, "size"));
    if (!uuid || !date || !size) {
        return std::nullopt;
    }
    HistoryEntry entry{std::move(*uuid),
                       Dates::fromReferenceDate(*date),
                       unescapedPath(originalPath->get_ref<const std::string&>()),
                       std::nullopt,
                       *size,
                       restored->get<bool>(),
                       std::nullopt};
    if (trashPath != nullptr && trashPath->is_string()) {
        entry.trashPath = unescapedPath(trashPath->get_ref<const std::string&>());
    }
    if (!decodeIdentity(object, entry.trashedItem)) {
        return std::nullopt;
    }
    return entry;
}

std::string encode(const std::vector<HistoryEntry>& entries) {
    json document = json::array();
    for (const HistoryEntry& entry : entries) {
        document.push_back(encodeEntry(entry));
    }
    return platform::JsonCoding::compactText(document);
}

std::optional<std::vector<HistoryEntry>> decode(std::string_view text) {
    return platform::JsonCoding::decodeArray<HistoryEntry>(
        text, [](const json& object) { return decodeEntry(object); }, limits);
}

} // namespace dorvik::HistoryFile
